#include "animation/TransformInterpolation.h"

#include "animation/MotionProfiles.h"
#include "platform/core/COrvelQuaternion.h"

#include <algorithm>

namespace Orvel
{

namespace
{

struct TransformParts
{
    COrvel3DVertex translation;
    COrvel3DVertex scale{1.0, 1.0, 1.0};
    COrvel3DVertex shear;
    COrvelQuaternion rotation;
};

TransformParts PartsOf(const COrvelMatrix& matrix)
{
    TransformParts parts;
    // One end of a blend about a pivot always is the identity, whose parts need no decomposition.
    if (matrix == COrvelMatrix())
        return parts;
    parts.translation = matrix.Translation();
    COrvel3DVertex angles;
    COrvel3DVertex perspective;
    double value = 1.0;
    // For a singular matrix the outputs describe the identity, which is what takes its place.
    static_cast<void>(matrix.DecomposeMatrix(parts.scale, parts.shear, angles, perspective, &value));
    const COrvelMatrix rotation = COrvelMatrix().DefineByRotation(angles.X(), 1.0, 0.0, 0.0) *
                                  COrvelMatrix().DefineByRotation(angles.Y(), 0.0, 1.0, 0.0) *
                                  COrvelMatrix().DefineByRotation(angles.Z(), 0.0, 0.0, 1.0);
    parts.rotation = COrvelQuaternion::FromMatrix(rotation);
    return parts;
}

} // namespace

COrvelMatrix InterpolateDecomposed(const COrvelMatrix& first, const COrvelMatrix& second, double t)
{
    const TransformParts from = PartsOf(first);
    const TransformParts to = PartsOf(second);
    const COrvel3DVertex shear = LerpFraction(from.shear, to.shear, t);
    COrvelMatrix result = COrvelMatrix::CreateTranslation(LerpFraction(from.translation, to.translation, t));
    result *= COrvelMatrix::CreateScalling(LerpFraction(from.scale, to.scale, t));
    result *= COrvelMatrix::CreateShearingYX(shear.X());
    result *= COrvelMatrix::CreateShearingZX(shear.Y());
    result *= COrvelMatrix::CreateShearingZY(shear.Z());
    result *= from.rotation.Squad(to.rotation, t).ToMatrix();
    return result;
}

COrvelMatrix InterpolateAboutPivot(const COrvelMatrix& first, const COrvelMatrix& second, const COrvel3DVertex& pivot,
                                   double t)
{
    const COrvelMatrix toPivot = COrvelMatrix::CreateTranslation(pivot);
    const COrvelMatrix fromPivot = COrvelMatrix::CreateTranslation(-pivot);
    const COrvelMatrix motion = fromPivot * first.Inverse() * second * toPivot;
    return first * toPivot * InterpolateDecomposed(COrvelMatrix(), motion, t) * fromPivot;
}

COrvelMatrix InterpolateTransformGap(const COrvelMatrix& first, const COrvelMatrix& second, const COrvel3DVertex& pivot,
                                     int frame, int from, int to, int outMode, int inMode)
{
    if (frame >= std::max(from, to))
        return second;
    if (frame <= std::min(from, to))
        return first;
    return InterpolateAboutPivot(first, second, pivot, GapFraction(frame, from, to, outMode, inMode));
}

} // namespace Orvel
