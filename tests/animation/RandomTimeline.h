#pragma once

#include "animation/COrvelKeyFrameDataHideShow.h"
#include "animation/COrvelKeyFrameDataLight.h"
#include "animation/COrvelKeyFrameDataMaterial.h"
#include "animation/COrvelKeyFrameDataMorph.h"
#include "animation/COrvelKeyFrameDataTransformBSplineFollower.h"
#include "animation/COrvelKeyFrameDataTransformRoundTable.h"
#include "animation/COrvelKeyFrameDataTransformSphericalCamera.h"
#include "animation/COrvelKeyFrameDataVertices.h"
#include "animation/COrvelKeyFrameManager.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelBasicMetallicMaterial.h"
#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelLight.h"
#include "platform/core/COrvelLightSource.h"
#include "platform/core/COrvelLinePath.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelMorphingTable.h"
#include "platform/core/COrvelTransform.h"
#include "platform/core/COrvelVerticiesTable.h"

#include <random>

namespace Orvel
{

/// A small scene, and key frame data of every type with random values for its entities. Made first in a program, the
/// entities have the same ids in each.
class RandomTimeline
{
public:
    static constexpr int typeCount = 10;

    RandomTimeline()
    {
        COrvelLightSource::Create(&document, "source", lamp);
        object->CreateMorphingTable()->AddMorphGeometry(geometry);
        path->SetBasicPath(COrvelBasicPath::Polyline({{0, 0, 0}, {2, 3, 5}, {7, 11, 13}}, false));
        for (COrvelTransform*& one : transforms)
            one = COrvelTransform::Create(&document);
    }

    int Integer(int from, int to) { return std::uniform_int_distribution(from, to)(random); }
    bool Flag() { return Integer(0, 1) == 1; }
    double Real() { return std::uniform_real_distribution(-9.0, 9.0)(random); }
    COrvel3DVertex Point() { return {Real(), Real(), Real()}; }
    COrvelMatrix Matrix()
    {
        return COrvelMatrix().DefineByRotation(Real(), Point()) * COrvelMatrix::CreateTranslation(Point());
    }

    /// New, reference count 0. Materials, lights and tables are missing now and then.
    COrvelKeyFrameData* Make(int type)
    {
        const COrvelID& moved = transforms[type]->ID();
        switch (type) {
        case eKeyFrameDataType_Material: {
            COrvelBasicMetallicMaterial metal;
            metal.SetName("größe");
            metal.SetRoughness(Real());
            return COrvelKeyFrameDataMaterial::CreateMaterialKeyFrameData(
                material->ID(), Integer(0, 3) ? &metal : nullptr, material->ID());
        }
        case eKeyFrameDataType_Light: {
            COrvelBasicSpotLight spot;
            spot.SetIntensity(Real());
            return COrvelKeyFrameDataLight::CreateLightKeyFrameData(lamp->ID(), Integer(0, 3) ? &spot : nullptr,
                                                                    lamp->ID());
        }
        case eKeyFrameDataType_TransformCamera:
            return Vary(COrvelKeyFrameDataTransformCamera::CreateCameraKeyFrameData(moved, COrvelBasicCamera()));
        case eKeyFrameDataType_TransformSphericalCamera:
            return Vary(COrvelKeyFrameDataTransformSphericalCamera::CreateSphericalCameraKeyFrameData(
                moved, COrvelBasicCamera()));
        case eKeyFrameDataType_TransformRoundTable:
            return COrvelKeyFrameDataTransformRoundTable::CreateRoundTableKeyFrameData(
                moved, Matrix(), Matrix(), 0, 0, Real(), Point(), Point(), 0, 0, 0, 0);
        case eKeyFrameDataType_TransformBSplineFollower: {
            auto* const follower = COrvelKeyFrameDataTransformBSplineFollower::CreateBSplineFollowerKeyFrameData(moved);
            follower->SetBaseMatrix(Matrix());
            follower->SetOffsetMatrix(Matrix());
            follower->SetReferenceMatrix(Matrix());
            follower->SetPathID(path->ID());
            follower->SetFollowedNodeID(object->ID());
            return follower;
        }
        case eKeyFrameDataType_Vertices: {
            auto* const shapes =
                COrvelKeyFrameDataVertices::CreateVerticesKeyFrameData(geometry->VerticiesTable()->ID(), nullptr);
            for (int k = Integer(1, 4); k > 0; --k) {
                auto shape = std::make_unique<COrvelBasicVectorsTable>(std::vector{Point(), Point(), Point()});
                shapes->AddTable(Integer(0, 3) ? std::move(shape) : nullptr);
            }
            return shapes;
        }
        case eKeyFrameDataType_HideShow:
            return COrvelKeyFrameDataHideShow::CreateHideShowKeyFrameData(object->ID(), Flag());
        case eKeyFrameDataType_Morph:
            return COrvelKeyFrameDataMorph::CreateMorphKeyFrameData(geometry->ID(), object->ID(), Real());
        default:
            return COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(moved, Matrix());
        }
    }

    /// Stores data of one type, one behind the other; every other one is in a collapsing group.
    void Fill(COrvelKeyFrameManager& timeline, int type, int count, const COrvelUUID& group)
    {
        int start = Integer(0, 5);
        for (int k = 0; k < count; ++k) {
            COrvelPtr<COrvelKeyFrameData> data = Make(type);
            data->SetTiming(start, start + Integer(0, 9), start + Integer(0, 9), start + Integer(0, 9), Integer(0, 3),
                            Integer(0, 3));
            data->SetWorkingFrame(start + Integer(0, 3));
            if (auto* const transformData = dynamic_cast<COrvelKeyFrameDataTransform*>(data.Get()))
                transformData->SetPivot(Point());
            if (k % 2 == 0) {
                data->SetOwnerGuid(object->GetGuid());
                data->SetCollapsingGroupID(group);
            }
            timeline.AddKeyFrameData(data, true);
            start = data->EndFrame() + Integer(1, 9);
        }
    }

    COrvelDocument document;
    COrvelGeometry* geometry = COrvelGeometry::Create(&document, {0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, 2});
    COrvel3DObject* object = COrvel3DObject::Create(&document, "object", geometry);
    COrvelCamera* camera = COrvelCamera::Create(&document, "camera");
    COrvelMaterial* material = COrvelMaterial::Create(&document);
    COrvelLight* lamp = COrvelLight::Create(&document, "lamp");
    COrvelLinePath* path = COrvelLinePath::Create(&document, "path");
    COrvelTransform* transforms[typeCount] = {}; ///< what data of that type move

private:
    COrvelKeyFrameData* Vary(COrvelKeyFrameDataTransformCamera* data)
    {
        data->SetStoredMatrix(Matrix());
        data->SetDistanceToTarget(Real());
        data->SetAngleInDegrees(Real());
        data->SetDescends(Flag());
        data->SetOrbit(Flag());
        data->SetUsesCameraBlend(Flag());
        data->SetFieldOfView(Integer(2, 170));
        data->SetDOF(Flag(), Real(), Real());
        if (auto* const grid = dynamic_cast<COrvelKeyFrameDataTransformSphericalCamera*>(data)) {
            grid->SetGridType(Integer(0, 2));
            grid->SetRows(Integer(1, 5));
            grid->SetColumns(Integer(1, 5));
            grid->SetVerticalWrap(Flag());
            grid->SetCentre(Point());
        }
        return data;
    }

    std::mt19937_64 random{20};
};

} // namespace Orvel
