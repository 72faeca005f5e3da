// The state of an animated entity at any frame: COrvelKeyFrameManager::KeyFrameDataAtFrame.
//
// Inside a data it is that data's snapshot. Outside, the nearest state is held, or blended across a gap with what comes
// next. Stored data are asked for their state by moving their working frame.

#include "animation/COrvelKeyFrameManager.h"

#include "animation/COrvelKeyFrameDataLight.h"
#include "animation/COrvelKeyFrameDataMaterial.h"
#include "animation/COrvelKeyFrameDataMorph.h"
#include "animation/COrvelKeyFrameDataTransform.h"
#include "animation/COrvelKeyFrameDataTransformCamera.h"
#include "animation/COrvelKeyFrameDataTransformSphericalCamera.h"
#include "animation/COrvelKeyFrameDataVertices.h"
#include "animation/CameraInterpolation.h"
#include "animation/KeyFrameRange.h"
#include "animation/MotionProfiles.h"
#include "animation/TransformInterpolation.h"
#include "platform/core/COrvelTransform.h"

#include <iterator>
#include <memory>
#include <optional>
#include <utility>

namespace Orvel
{

namespace
{

using State = COrvelPtr<COrvelKeyFrameData>;

/// Two neighbouring data of one entity and a frame between them. Both stand at the frames that face the gap.
struct Gap
{
    COrvelID id;
    int frame = 0;
    COrvelPtr<COrvelKeyFrameData> previous;
    COrvelPtr<COrvelKeyFrameData> next;
    int from = 0;
    int to = 0;

    double LinearFraction() const { return GapFraction(frame, from, to, 0, 0); }
    double Linear(double a, double b) const { return Lerp(a, b, frame, from, to); }
    int OutMode() const { return previous->EaseOut(); }
    int InMode() const { return next->EaseIn(); }
};

Gap MakeGap(const COrvelID& id, int frame, const State& previous, const State& next)
{
    previous->SetWorkingFrame(previous->EndFrame());
    next->SetWorkingFrame(next->StartFrame());
    return {id, frame, previous, next, previous->EffectiveFrame(), next->EffectiveFrame()};
}

/// Both ends of a gap as one class; null when one of them is of another class.
template <class Data>
struct Ends
{
    explicit Ends(const Gap& gap)
        : previous(dynamic_cast<Data*>(gap.previous.Get()))
        , next(dynamic_cast<Data*>(gap.next.Get()))
    {}
    explicit operator bool() const { return previous && next; }

    Data* previous;
    Data* next;
};

State AtFrame(State state, int frame)
{
    state->SetWorkingFrame(frame);
    return state;
}

// --- transforms

/// The pivot of the data that was stored later.
const COrvel3DVertex& PivotOf(const Ends<COrvelKeyFrameDataTransform>& ends)
{
    return ends.previous->SequenceNumber() > ends.next->SequenceNumber() ? ends.previous->Pivot() : ends.next->Pivot();
}

std::optional<COrvelMatrix> BlendMatrices(const Gap& gap, const Ends<COrvelKeyFrameDataTransform>& ends)
{
    const auto* const transform = dynamic_cast<const COrvelTransform*>(gap.id.Entity());
    if (!transform)
        return std::nullopt;
    const COrvelMatrix uniform = transform->UniformizationMatrix();
    const COrvelMatrix inverse = uniform.Inverse();
    const COrvelMatrix blended =
        InterpolateTransformGap(ends.previous->Matrix() * uniform, ends.next->Matrix() * uniform,
                                inverse * PivotOf(ends), gap.frame, gap.from, gap.to, gap.OutMode(), gap.InMode());
    return blended * inverse;
}

State BlendTransforms(const Gap& gap)
{
    const Ends<COrvelKeyFrameDataTransform> ends(gap);
    const std::optional<COrvelMatrix> matrix = ends ? BlendMatrices(gap, ends) : std::nullopt;
    if (!matrix)
        return nullptr;
    const COrvelPtr<COrvelKeyFrameDataTransform> blend(
        COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(gap.id, *matrix));
    blend->SetPivot(PivotOf(ends));
    return AtFrame(blend, gap.frame);
}

// --- cameras

COrvelBasicCamera BlendBasicCameras(const Gap& gap, const Ends<COrvelKeyFrameDataTransformCamera>& ends)
{
    return InterpolateCameraGap(ends.previous->BasicCamera(), ends.next->BasicCamera(), gap.frame, gap.from, gap.to,
                                gap.OutMode(), gap.InMode());
}

/// The placement as a transform, the optics one by one. Depth of field is off between two such cameras; its distance
/// is blended all the same, for whoever switches it on.
State BlendCamerasAsTransforms(const Gap& gap, const Ends<COrvelKeyFrameDataTransformCamera>& cameras)
{
    const Ends<COrvelKeyFrameDataTransform> ends(gap);
    const std::optional<COrvelMatrix> matrix = BlendMatrices(gap, ends);
    if (!matrix)
        return nullptr;
    const auto& [previous, next] = cameras;
    const COrvelPtr<COrvelKeyFrameDataTransformCamera> blend(
        COrvelKeyFrameDataTransformCamera::CreateCameraKeyFrameData(
            gap.id, *matrix, gap.Linear(previous->FieldOfView(), next->FieldOfView()),
            gap.Linear(previous->DistanceToTarget(), next->DistanceToTarget()), false,
            gap.Linear(previous->DOFDistance(), next->DOFDistance()),
            gap.Linear(previous->DOFFStop(), next->DOFFStop())));
    blend->SetPivot(PivotOf(ends));
    return AtFrame(blend, gap.frame);
}

State BlendCameras(const Gap& gap)
{
    const Ends<COrvelKeyFrameDataTransformCamera> ends(gap);
    if (!ends)
        return nullptr;
    if (!ends.previous->UsesCameraBlend() || !ends.next->UsesCameraBlend())
        return BlendCamerasAsTransforms(gap, ends);
    return AtFrame(COrvelKeyFrameDataTransformCamera::CreateCameraKeyFrameData(gap.id, BlendBasicCameras(gap, ends)),
                   gap.frame);
}

State BlendSphericalCameras(const Gap& gap)
{
    if (!Ends<COrvelKeyFrameDataTransformSphericalCamera>(gap))
        return nullptr;
    const COrvelBasicCamera camera = BlendBasicCameras(gap, Ends<COrvelKeyFrameDataTransformCamera>(gap));
    return AtFrame(COrvelKeyFrameDataTransformSphericalCamera::CreateSphericalCameraKeyFrameData(gap.id, camera),
                   gap.frame);
}

// --- what else changes gradually

/// The blend writes into the material whose name it bears.
COrvelID TargetOf(const COrvelBasicMaterial* blended, const Ends<COrvelKeyFrameDataMaterial>& ends)
{
    const COrvelBasicMaterial* const previous = ends.previous->Material();
    const bool namedLikePrevious = blended && previous && blended->Name() == previous->Name();
    return namedLikePrevious ? ends.previous->TargetEntityID() : ends.next->TargetEntityID();
}

State BlendMaterials(const Gap& gap)
{
    const Ends<COrvelKeyFrameDataMaterial> ends(gap);
    if (!ends)
        return nullptr;
    std::unique_ptr<COrvelBasicMaterial> blended(
        COrvelBasicMaterial::Interpolate(ends.previous->Material(), ends.next->Material(), gap.LinearFraction()));
    const COrvelPtr<COrvelKeyFrameDataMaterial> blend(
        COrvelKeyFrameDataMaterial::CreateMaterialKeyFrameData(gap.id, nullptr, TargetOf(blended.get(), ends)));
    blend->SetMaterial(std::move(blended));
    return AtFrame(blend, gap.frame);
}

/// Two lights without a blend leave the earlier one as it stands, the stored data itself.
State BlendLights(const Gap& gap)
{
    const Ends<COrvelKeyFrameDataLight> ends(gap);
    if (!ends)
        return nullptr;
    const COrvelBasicLight* const light = ends.previous->Light();
    std::unique_ptr<COrvelBasicLight> blended(light ? light->Interpolate(ends.next->Light(), gap.LinearFraction())
                                                    : nullptr);
    if (!blended)
        return gap.previous;
    const COrvelPtr<COrvelKeyFrameDataLight> blend(
        COrvelKeyFrameDataLight::CreateLightKeyFrameData(gap.id, nullptr, ends.previous->TargetEntityID()));
    blend->SetLight(std::move(blended));
    return AtFrame(blend, gap.frame);
}

State BlendMorphs(const Gap& gap)
{
    const Ends<COrvelKeyFrameDataMorph> ends(gap);
    if (!ends)
        return nullptr;
    const double weight = EaseScalar(ends.previous->Weight(), ends.next->Weight(), gap.frame, gap.from, gap.to,
                                     gap.OutMode(), gap.InMode());
    return AtFrame(COrvelKeyFrameDataMorph::CreateMorphKeyFrameData(gap.id, ends.previous->ObjectID(), weight),
                   gap.frame);
}

// --- what holds until the next data starts

State HoldVertices(const Gap& gap)
{
    const Ends<COrvelKeyFrameDataVertices> ends(gap);
    if (!ends)
        return nullptr;
    const COrvelBasicVectorsTable* const shape = ends.previous->TableAtWorkingFrame();
    const bool bothHaveShape = shape && ends.next->TableAtWorkingFrame();
    return AtFrame(COrvelKeyFrameDataVertices::CreateVerticesKeyFrameData(gap.id, bothHaveShape ? shape : nullptr),
                   gap.frame);
}

State HoldVisibility(const Gap& gap)
{
    gap.previous->SetWorkingFrame(gap.frame);
    return gap.previous->Clone(false);
}

State Blend(const Gap& gap)
{
    switch (gap.previous->Type()) {
    case eKeyFrameDataType_Transform:
    case eKeyFrameDataType_TransformRoundTable:
    case eKeyFrameDataType_TransformBSplineFollower:
        return BlendTransforms(gap);
    case eKeyFrameDataType_Material:
        return BlendMaterials(gap);
    case eKeyFrameDataType_TransformCamera:
        return BlendCameras(gap);
    case eKeyFrameDataType_Vertices:
        return HoldVertices(gap);
    case eKeyFrameDataType_Light:
        return BlendLights(gap);
    case eKeyFrameDataType_TransformSphericalCamera:
        return BlendSphericalCameras(gap);
    case eKeyFrameDataType_HideShow:
        return HoldVisibility(gap);
    case eKeyFrameDataType_Morph:
        return BlendMorphs(gap);
    default:
        return nullptr;
    }
}

} // namespace

COrvelPtr<COrvelKeyFrameData> COrvelKeyFrameManager::KeyFrameDataAtFrame(const COrvelID& id, int frame)
{
    const auto found = keyFrameDataByEntity.find(id);
    if (found == keyFrameDataByEntity.end() || found->second.empty())
        return nullptr;
    const KeyFrameDataByFrame& data = found->second;
    const KeyFrameRange covering = FindKeyFrameRange(data, frame, frame);
    if (!covering.IsEmpty()) {
        const State& stored = covering.begin->second;
        stored->SetWorkingFrame(frame);
        return AtFrame(stored->Clone(true), frame);
    }
    const auto next = covering.end;
    if (next == data.begin()) {
        next->second->SetWorkingFrame(next->second->StartFrame());
        return next->second->Clone(false);
    }
    const State& previous = std::prev(next)->second;
    if (next == data.end()) {
        previous->SetWorkingFrame(previous->EndFrame());
        return previous->Clone(false);
    }
    return Blend(MakeGap(id, frame, previous, next->second));
}

} // namespace Orvel
