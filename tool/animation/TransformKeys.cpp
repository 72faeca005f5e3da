#include "tool/animation/TransformKeys.h"

#include "animation/COrvelKeyFrameDataTransform.h"
#include "animation/COrvelKeyFrameManager.h"
#include "animation/TransformInterpolation.h"
#include "platform/core/COrvelSceneNode.h"
#include "platform/core/COrvelTransform.h"
#include "tool/animation/MatrixComparison.h"
#include "tool/animation/StoreKeyFrameData.h"

#include <algorithm>
#include <cstddef>

namespace Orvel::Animate
{

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
