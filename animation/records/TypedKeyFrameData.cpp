#include "animation/records/TypedKeyFrameData.h"

#include "animation/COrvelKeyFrameDataHideShow.h"
#include "animation/COrvelKeyFrameDataLight.h"
#include "animation/COrvelKeyFrameDataMaterial.h"
#include "animation/COrvelKeyFrameDataMorph.h"
#include "animation/COrvelKeyFrameDataTransformBSplineFollower.h"
#include "animation/COrvelKeyFrameDataTransformRoundTable.h"
#include "animation/COrvelKeyFrameDataTransformSphericalCamera.h"
#include "animation/COrvelKeyFrameDataVertices.h"
#include "platform/core/COrvelArchiveBase.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelBasicPointLight.h"
#include "platform/core/COrvelTablesCreator.h"

#include <memory>

namespace Orvel
{

namespace
{

COrvelKeyFrameData* CreateMaterial(const COrvelID& entity)
{
    const std::unique_ptr<COrvelBasicMaterial> material(COrvelBasicGeneralMaterial::Create());
    return COrvelKeyFrameDataMaterial::CreateMaterialKeyFrameData(entity, material.get(), entity);
}

COrvelKeyFrameData* CreateVertices(const COrvelID& entity)
{
    const std::unique_ptr<COrvelBasicVectorsTable> table(COrvelTablesCreator::CreateVectorsTable());
    return COrvelKeyFrameDataVertices::CreateVerticesKeyFrameData(entity, table.get());
}

COrvelKeyFrameData* CreateLight(const COrvelID& entity)
{
    const COrvelBasicPointLight light;
    return COrvelKeyFrameDataLight::CreateLightKeyFrameData(entity, &light, entity);
}

/// A data to be read into; null for an unknown type.
COrvelPtr<COrvelKeyFrameData> CreateKeyFrameData(uint32 type, const COrvelID& entity)
{
    switch (type) {
    case eKeyFrameDataType_Transform:
        return COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(entity, COrvelMatrix());
    case eKeyFrameDataType_Material:
        return CreateMaterial(entity);
    case eKeyFrameDataType_TransformCamera:
        return COrvelKeyFrameDataTransformCamera::CreateCameraKeyFrameData(entity, COrvelBasicCamera());
    case eKeyFrameDataType_Vertices:
        return CreateVertices(entity);
    case eKeyFrameDataType_Light:
        return CreateLight(entity);
    case eKeyFrameDataType_TransformRoundTable:
        return COrvelKeyFrameDataTransformRoundTable::CreateRoundTableKeyFrameData(
            entity, COrvelMatrix(), COrvelMatrix(), 0, 0, 0.0, COrvel3DVertex(), COrvel3DVertex(), -1, -1, 0, 0);
    case eKeyFrameDataType_TransformBSplineFollower:
        return COrvelKeyFrameDataTransformBSplineFollower::CreateBSplineFollowerKeyFrameData(entity);
    case eKeyFrameDataType_TransformSphericalCamera:
        return COrvelKeyFrameDataTransformSphericalCamera::CreateSphericalCameraKeyFrameData(entity,
                                                                                             COrvelBasicCamera());
    case eKeyFrameDataType_HideShow:
        return COrvelKeyFrameDataHideShow::CreateHideShowKeyFrameData(entity, true);
    case eKeyFrameDataType_Morph:
        return COrvelKeyFrameDataMorph::CreateMorphKeyFrameData(entity, COrvelID(), 0.0);
    default:
        return nullptr;
    }
}

} // namespace

bool WriteTypedKeyFrameData(COrvelArchiveBase& archive, COrvelKeyFrameData& data)
{
    auto type = static_cast<uint32>(data.Type());
    return archive.ReadWrite(type, data);
}

COrvelPtr<COrvelKeyFrameData> ReadTypedKeyFrameData(COrvelArchiveBase& archive, const COrvelID& entity)
{
    uint32 type = 0;
    if (!archive.ReadWrite(type))
        return nullptr;
    const COrvelPtr<COrvelKeyFrameData> data = CreateKeyFrameData(type, entity);
    return data && archive.ReadWrite(*data) ? data : nullptr;
}

} // namespace Orvel
