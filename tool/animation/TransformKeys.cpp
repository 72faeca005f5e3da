#include "tool/animation/TransformKeys.h"

#include "animation/COrvelKeyFrameDataTransform.h"
#include "animation/COrvelKeyFrameManager.h"
#include "animation/TransformInterpolation.h"
#include "platform/core/COrvelSceneNode.h"
#include "platform/core/COrvelTransform.h"
#include "tool/animation/StoreKeyFrameData.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace Orvel::Animate
{

namespace
{

double SizeOfAxes(const COrvelMatrix& a)
{
    double squares = 0.0;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            squares += a.M(row, column) * a.M(row, column);
    return std::sqrt(squares);
}

/// Compares matrices: lengths of the differences of origins and of axes (all nine numbers).
class MatrixComparison
{
public:
    MatrixComparison(double positionLimit, double axesLimit)
        : position(positionLimit)
        , axes(axesLimit)
    {}

    [[nodiscard]] bool AreNear(const COrvelMatrix& a, const COrvelMatrix& b) const
    {
        double squares = 0.0;
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 3; ++column) {
                const double difference = a.M(row, column) - b.M(row, column);
                squares += difference * difference;
            }
        return squares <= axes * axes && (a.Translation() - b.Translation()).Length() <= position;
    }

private:
    double position;
    double axes;
};

/// Turning by a small angle changes two of three unit axes, the square root of 3 long as a whole, by the angle each.
double AxesLimit(const std::vector<COrvelMatrix>& samples, double angleInRadians)
{
    double largest = 0.0;
    for (const COrvelMatrix& sample : samples)
        largest = std::max(largest, SizeOfAxes(sample));
    return std::numbers::sqrt2 * angleInRadians / std::numbers::sqrt3 * largest;
}

} // namespace

TransformKeys ReduceTransform(COrvelSceneNode& node, const std::vector<COrvelMatrix>& samples,
                              const TransformTolerance& tolerance)
{
    const double axesLimit = AxesLimit(samples, tolerance.angleInRadians);
    const MatrixComparison whole(tolerance.position, axesLimit);
    const MatrixComparison same(SameState * tolerance.position, SameState * axesLimit);
    TransformKeys keys;
    keys.node = &node;
    const COrvelMatrix rest = node.LocalMatrix();
    if (std::all_of(samples.begin(), samples.end(), [&](const COrvelMatrix& m) { return whole.AreNear(rest, m); }))
        return keys;

    const auto at = [&samples](int frame) -> const COrvelMatrix& { return samples[static_cast<std::size_t>(frame)]; };
    SampledMotion motion;
    motion.lastFrame = static_cast<int>(samples.size()) - 1;
    motion.isSame = [&](int frame, int other) { return same.AreNear(at(frame), at(other)); };
    motion.isNearBlend = [&](int first, int second, int from, int to, int frame) {
        return whole.AreNear(InterpolateTransformGap(at(first), at(second), {}, frame, from, to, 0, 0), at(frame));
    };
    keys.ranges = ReduceKeys(motion);
    for (const KeyRange& range : keys.ranges)
        keys.matrices.push_back(at(range.start));
    return keys;
}

void StoreKeys(const TransformKeys& keys, COrvelKeyFrameManager& manager)
{
    for (std::size_t i = 0; i < keys.ranges.size(); ++i)
        StoreKeyFrameData(COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(keys.node->LocalTransform()->ID(),
                                                                                   keys.matrices[i]),
                          keys.ranges[i], manager);
}

} // namespace Orvel::Animate
