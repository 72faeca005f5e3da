#pragma once

namespace Orvel
{

/// What COrvelKeyFrameData::Type() answers. The numbers are stored in archives.
enum enumKeyFrameDataType : int
{
    eKeyFrameDataType_Transform = 0,
    eKeyFrameDataType_Material = 1,
    eKeyFrameDataType_TransformCamera = 2,
    eKeyFrameDataType_Vertices = 3,
    eKeyFrameDataType_Light = 4,
    eKeyFrameDataType_TransformRoundTable = 5,
    eKeyFrameDataType_TransformBSplineFollower = 6,
    eKeyFrameDataType_TransformSphericalCamera = 7,
    eKeyFrameDataType_HideShow = 8,
    eKeyFrameDataType_Morph = 9
};

} // namespace Orvel
