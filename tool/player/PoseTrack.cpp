#include "tool/player/PoseTrack.h"

#include "tool/animation/MatrixComparison.h"
#include "tool/player/Track.h"

#include <Eigen/Geometry>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <optional>
#include <span>

namespace Orvel::Player
{

namespace
{

using Eigen::Matrix3d;
using Eigen::Quaterniond;
using Eigen::Vector3d;
using nlohmann::ordered_json;

constexpr double QuaternionStep = 1e-4;
/// Scales and cosines that differ by less look the same.
constexpr double SameScale = 5e-5;

constexpr std::size_t RigidWidth = 7;
constexpr std::size_t ScaledWidth = 10;
constexpr std::size_t GeneralWidth = 12;

Matrix3d AxesOf(const COrvelMatrix& matrix)
{
    Matrix3d axes;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            axes(row, column) = matrix.M(row, column);
    return axes;
}

struct Pose
{
    Quaterniond rotation;
    Vector3d scale;
};

/// Nothing when the axes are no turned and scaled ones: sheared, flat or not finite.
std::optional<Pose> PoseOf(const COrvelMatrix& matrix)
{
    Matrix3d axes = AxesOf(matrix);
    Vector3d scale = axes.colwise().norm();
    if (!(scale.minCoeff() > 1e-6 * scale.maxCoeff()))
        return std::nullopt;
    for (int column = 0; column < 3; ++column)
        axes.col(column) /= scale[column];
    const Vector3d cosines(axes.col(0).dot(axes.col(1)), axes.col(1).dot(axes.col(2)), axes.col(2).dot(axes.col(0)));
    if (!(cosines.cwiseAbs().maxCoeff() < SameScale))
        return std::nullopt;
    // One and the same axis in all frames, so that a mirrored node does not jump.
    if (axes.determinant() < 0.0) {
        axes.col(0) *= -1.0;
        scale[0] *= -1.0;
    }
    return Pose{Quaterniond(axes).normalized(), scale};
}

/// What the numbers of a row stand for.
struct PoseForm
{
    std::size_t width = GeneralWidth;
    double translationStep = 1.0;
    double axisStep = 1.0;
    Vector3d scale = Vector3d::Ones(); ///< with RigidWidth
};

/// The matrix of a row. Does what poseOf in tracks.js does.
COrvelMatrix MatrixOf(const PoseForm& form, std::span<const double> row)
{
    COrvelMatrix matrix;
    const auto place = [&](const Matrix3d& axes, std::span<const double> translation) {
        for (int r = 0; r < 3; ++r) {
            for (int column = 0; column < 3; ++column)
                matrix.M(r, column) = axes(r, column);
            matrix.M(r, 3) = translation[static_cast<std::size_t>(r)] * form.translationStep;
        }
    };
    if (form.width == GeneralWidth) {
        place(Eigen::Map<const Matrix3d>(row.data()) * form.axisStep, row.subspan(9));
        return matrix;
    }
    const Vector3d scale =
        form.width == ScaledWidth ? Vector3d(Vector3d(row[7], row[8], row[9]) * form.axisStep) : form.scale;
    const Quaterniond rotation = Quaterniond(row[6], row[3], row[4], row[5]).normalized();
    place(rotation.toRotationMatrix() * scale.asDiagonal(), row);
    return matrix;
}

Quaterniond RotationOf(std::span<const std::int32_t> row)
{
    return Quaterniond(row[6], row[3], row[4], row[5]).normalized();
}

/// Which way round such a turn goes hangs on how an engine rounds.
bool IsNearlyHalfTurn(std::span<const std::int32_t> from, std::span<const std::int32_t> to)
{
    return std::abs(RotationOf(from).dot(RotationOf(to))) < 0.1;
}

/// Does what blendNumbers and blendPoses in tracks.js do.
std::array<double, GeneralWidth> Blend(std::span<const std::int32_t> from, std::span<const std::int32_t> to,
                                       double step)
{
    std::array<double, GeneralWidth> row{};
    for (std::size_t k = 0; k < from.size(); ++k)
        row[k] = from[k] + step * (static_cast<double>(to[k]) - from[k]);
    if (from.size() == GeneralWidth)
        return row;
    const Quaterniond blended = RotationOf(from).slerp(step, RotationOf(to));
    const std::array<double, 4> numbers{blended.x(), blended.y(), blended.z(), blended.w()};
    std::ranges::copy(numbers, row.begin() + 3);
    return row;
}

std::optional<std::vector<Pose>> PosesOf(const std::vector<COrvelMatrix>& samples)
{
    std::vector<Pose> poses;
    poses.reserve(samples.size());
    for (const COrvelMatrix& sample : samples) {
        std::optional<Pose> pose = PoseOf(sample);
        if (!pose)
            return std::nullopt;
        // Of the two quaternions of a rotation the one near that of the frame before: small differences.
        if (!poses.empty() && pose->rotation.dot(poses.back().rotation) < 0.0)
            pose->rotation.coeffs() *= -1.0;
        poses.push_back(*pose);
    }
    return poses;
}

bool ScaleStays(const std::vector<Pose>& poses)
{
    const Vector3d& first = poses.front().scale;
    const double limit = SameScale * first.cwiseAbs().maxCoeff();
    return std::ranges::all_of(poses,
                               [&](const Pose& pose) { return (pose.scale - first).cwiseAbs().maxCoeff() <= limit; });
}

double LargestAxis(const std::vector<COrvelMatrix>& samples)
{
    double largest = 0.0;
    for (const COrvelMatrix& sample : samples)
        largest = std::max(largest, AxesOf(sample).cwiseAbs().maxCoeff());
    return largest;
}

PoseForm FormOf(const std::vector<COrvelMatrix>& samples, const std::optional<std::vector<Pose>>& poses,
                double positionTolerance)
{
    PoseForm form;
    double farthest = 0.0;
    for (const COrvelMatrix& sample : samples)
        farthest = std::max(farthest, sample.Translation().Length());
    form.translationStep = ShortStep(std::max(positionTolerance / 2.0, farthest / 1e8));
    form.axisStep = ShortStep(LargestAxis(samples) / 1e4);
    if (!poses)
        return form;
    form.width = ScaleStays(*poses) ? RigidWidth : ScaledWidth;
    form.scale = poses->front().scale;
    if ((form.scale - Vector3d::Ones()).cwiseAbs().maxCoeff() <= SameScale)
        form.scale = Vector3d::Ones();
    return form;
}

void AppendSteps(std::span<const double> numbers, double step, std::vector<std::int32_t>& values)
{
    for (const double number : numbers)
        values.push_back(StepsOf(number, step));
}

Rows RowsOf(const PoseForm& form, const std::vector<COrvelMatrix>& samples,
            const std::optional<std::vector<Pose>>& poses)
{
    Rows rows{form.width, {}};
    rows.values.reserve(form.width * samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const COrvel3DVertex origin = samples[i].Translation();
        const std::array<double, 3> translation{origin.X(), origin.Y(), origin.Z()};
        if (form.width == GeneralWidth) {
            const Matrix3d axes = AxesOf(samples[i]);
            AppendSteps({axes.data(), 9}, form.axisStep, rows.values);
            AppendSteps(translation, form.translationStep, rows.values);
            continue;
        }
        const Pose& pose = (*poses)[i];
        AppendSteps(translation, form.translationStep, rows.values);
        AppendSteps({pose.rotation.coeffs().data(), 4}, QuaternionStep, rows.values);
        if (form.width == ScaledWidth)
            AppendSteps({pose.scale.data(), 3}, form.axisStep, rows.values);
    }
    return rows;
}

} // namespace

ordered_json MakePoseTrack(const std::vector<COrvelMatrix>& samples, const Animate::TransformTolerance& tolerance)
{
    const std::optional<std::vector<Pose>> poses = PosesOf(samples);
    const PoseForm form = FormOf(samples, poses, tolerance.position);
    const Rows rows = RowsOf(form, samples, poses);
    const Animate::MatrixComparison comparison(tolerance.position,
                                               Animate::AxesLimit(samples, tolerance.angleInRadians));
    ordered_json track{{"w", form.width}, {"t", form.translationStep}};
    if (form.width != RigidWidth)
        track["a"] = form.axisStep;
    else if (form.scale != Vector3d::Ones())
        track["c"] = std::vector<double>(form.scale.begin(), form.scale.end());
    const auto isNear = [&](int first, int second, double step, int frame) {
        if (form.width != GeneralWidth && IsNearlyHalfTurn(rows.At(first), rows.At(second)))
            return false;
        const auto row = Blend(rows.At(first), rows.At(second), step);
        return comparison.AreNear(MatrixOf(form, row), samples[static_cast<std::size_t>(frame)]);
    };
    WriteTrack(rows, isNear, track);
    return track;
}

} // namespace Orvel::Player
