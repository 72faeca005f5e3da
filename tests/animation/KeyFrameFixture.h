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
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelBasicPointLight.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelTransform.h"

#include <gtest/gtest.h>

#include <vector>

namespace Orvel
{

using Plain = COrvelKeyFrameDataTransform;
using Camera = COrvelKeyFrameDataTransformCamera;
using Grid = COrvelKeyFrameDataTransformSphericalCamera;
using Table = COrvelKeyFrameDataTransformRoundTable;
using Follower = COrvelKeyFrameDataTransformBSplineFollower;
using Material = COrvelKeyFrameDataMaterial;
using Light = COrvelKeyFrameDataLight;
using Vertices = COrvelKeyFrameDataVertices;
using HideShow = COrvelKeyFrameDataHideShow;
using Morph = COrvelKeyFrameDataMorph;
using DataPtr = COrvelPtr<COrvelKeyFrameData>;

inline COrvelMatrix Shift(double x, double y, double z)
{
    return COrvelMatrix::CreateTranslation({x, y, z});
}

/// @param angle radians.
inline COrvelMatrix Turn(double angle, double x, double y, double z)
{
    return COrvelMatrix().DefineByRotation(angle, x, y, z);
}

inline void ExpectNear(const COrvel3DVertex& got, const COrvel3DVertex& want, double tolerance = 1e-9)
{
    EXPECT_LT((got - want).Length(), tolerance) << got.X() << " " << got.Y() << " " << got.Z() << " instead of "
                                                << want.X() << " " << want.Y() << " " << want.Z();
}

/// Start, end, constant-speed start and end, working frame.
inline std::vector<int> FramesOf(const COrvelKeyFrameData& data)
{
    return {data.StartFrame(), data.EndFrame(), data.ConstantSpeedStartFrame(), data.ConstantSpeedEndFrame(),
            data.WorkingFrame()};
}

/// Looks level along +y at the origin from ten units away, with depth of field.
inline COrvelBasicCamera LevelCamera()
{
    COrvelBasicCamera camera;
    camera.SetLookAtAndPositionFromLookAtTarget({0, 0, 0}, {0, -10, 0}, false);
    camera.SetCamUp(0, 0, 1);
    camera.SetFOV(42);
    camera.SetDOF(true, 6, 2.8);
    return camera;
}

/// A document and a manager of its own, installed for the process.
class KeyFrames : public testing::Test
{
protected:
    KeyFrames() { COrvelKeyFrameManager::SetInstance(manager); }
    ~KeyFrames() override { COrvelKeyFrameManager::SetInstance(nullptr); }

    /// Gives a new data its range.
    template <class Data>
    static COrvelPtr<Data> Over(int start, int end, Data* made)
    {
        COrvelPtr<Data> data(made);
        data->SetStartFrame(start, true);
        data->SetEndFrame(end, true);
        return data;
    }

    /// The same, stored in the manager.
    template <class Data>
    COrvelPtr<Data> Store(int start, int end, Data* made)
    {
        const COrvelPtr<Data> data = Over(start, end, made);
        DataPtr stored = data;
        manager->AddKeyFrameData(stored, true);
        return data;
    }

    /// Places the transform of the fixture.
    COrvelPtr<Plain> PlainOver(int start, int end, const COrvelMatrix& matrix = {}) const
    {
        return Over(start, end, Plain::CreateTransformKeyFrameData(id, matrix));
    }
    COrvelPtr<Plain> StorePlain(int start, int end, const COrvelMatrix& matrix = {})
    {
        return Store(start, end, Plain::CreateTransformKeyFrameData(id, matrix));
    }

    /// The evaluated state as its own class; null when it is of another one.
    template <class Data>
    COrvelPtr<Data> StateAt(const COrvelID& entity, int frame)
    {
        return COrvelPtr<Data>(dynamic_cast<Data*>(manager->KeyFrameDataAtFrame(entity, frame).Get()));
    }

    COrvelID NewTransform() { return COrvelTransform::Create(&document)->ID(); }

    COrvelDocument document;
    COrvelKeyFrameManager* manager = new COrvelKeyFrameManager;
    COrvelTransform* transform = COrvelTransform::Create(&document);
    COrvelID id = transform->ID();
};

} // namespace Orvel
