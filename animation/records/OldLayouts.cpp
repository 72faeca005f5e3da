// What a timeline that was read from an older file is brought into: data that were filed under other entities then.

#include "animation/COrvelKeyFrameDataMorph.h"
#include "animation/COrvelKeyFrameDataTransformCamera.h"
#include "animation/COrvelKeyFrameManager.h"
#include "animation/records/LayoutVersions.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelMorphingTable.h"
#include "platform/core/COrvelTransform.h"
#include "platform/core/EntityTypes.h"

#include <utility>

namespace Orvel
{

namespace
{

/// A camera data for the camera's transform with the values of one that was filed under its node.
COrvelPtr<COrvelKeyFrameData> ForTransformOf(const COrvelCamera& camera, COrvelKeyFrameDataTransformCamera& old)
{
    const COrvelPtr<COrvelKeyFrameDataTransformCamera> data =
        COrvelKeyFrameDataTransformCamera::CreateCameraKeyFrameData(&camera);
    data->RestoreFromCopy(&old);
    return data;
}

/// Appends a data for each morph target of an object, with its weight from the list of `old`. Targets beyond the end of
/// the list had no part in the shape.
void AppendForEachTarget(const COrvelKeyFrameDataMorph& old, const COrvel3DObject& object, KeyFrameDataList& list)
{
    const std::vector<double>& weights = old.Weights();
    const std::vector<COrvelID> targets = object.MorphingTable()->ListAllMorphGeometries();
    for (std::size_t k = 0; k < targets.size(); ++k) {
        const double weight = k < weights.size() ? weights[k] : 0.0;
        const COrvelPtr<COrvelKeyFrameData> data =
            COrvelKeyFrameDataMorph::CreateMorphKeyFrameData(targets[k], object.ID(), weight);
        data->SetStartFrame(old.StartFrame(), false);
        data->SetEndFrame(old.EndFrame(), false);
        data->SetWorkingFrame(old.EffectiveFrame());
        data->SetConstantSpeedStartFrame(old.ConstantSpeedStartFrame());
        data->SetConstantSpeedEndFrame(old.ConstantSpeedEndFrame());
        list.push_back(data);
    }
}

} // namespace

void COrvelKeyFrameManager::ConvertOldLayouts()
{
    const int version = DocumentVersion();
    filedFrames.clear();
    if (version < LayoutVersion::cameraTransform)
        MoveCamerasToTransforms();
    if (version < LayoutVersion::morphTarget)
        SplitMorphWeights();
}

void COrvelKeyFrameManager::MoveCamerasToTransforms()
{
    std::map<COrvelID, KeyFrameDataByFrame> moved;
    std::vector<COrvelID> cameraIDs;
    for (const auto& [id, dataByFrame] : keyFrameDataByEntity) {
        if (id.EntityType() != eEntityType_Camera)
            continue;
        cameraIDs.push_back(id);
        auto* const camera = dynamic_cast<COrvelCamera*>(id.Entity());
        if (!camera)
            continue;
        if (!camera->LocalTransform())
            camera->SetLocalTransform(COrvelTransform::Create(id.Document()));
        const COrvelID transform = camera->LocalTransform()->ID();
        entityAliases[transform] = transform;
        const auto count = dataCountByEntity.find(id);
        dataCountByEntity[transform] = count == dataCountByEntity.end() ? 0 : count->second;
        for (const auto& [start, data] : dataByFrame)
            if (auto* const old = dynamic_cast<COrvelKeyFrameDataTransformCamera*>(data.Get()))
                moved[transform].emplace(start, ForTransformOf(*camera, *old));
    }
    for (const COrvelID& id : cameraIDs) {
        keyFrameDataByEntity.erase(id);
        entityAliases.erase(id);
        dataCountByEntity.erase(id);
    }
    // What is filed under a transform already is kept.
    keyFrameDataByEntity.merge(moved);
}

void COrvelKeyFrameManager::SplitMorphWeights()
{
    KeyFrameDataList old;
    KeyFrameDataList split;
    for (const auto& [id, dataByFrame] : keyFrameDataByEntity) {
        if (id.EntityType() != eEntityType_3DObject)
            continue;
        const auto* const object = dynamic_cast<const COrvel3DObject*>(id.Entity());
        if (!object || !object->MorphingTable())
            continue;
        for (const auto& [start, data] : dataByFrame) {
            if (const auto* const morph = dynamic_cast<const COrvelKeyFrameDataMorph*>(data.Get())) {
                AppendForEachTarget(*morph, *object, split);
                old.push_back(data);
            }
        }
    }
    RemoveKeyFrameData(old);
    for (COrvelPtr<COrvelKeyFrameData>& data : split)
        AddKeyFrameData(data, false);
}

} // namespace Orvel
