#pragma once

namespace Orvel
{

/// What COrvelID::EntityType() answers: one bit for each kind of entity, so that a set of kinds is a mask. The numbers
/// are stored in archives.
enum enumEntityType : int
{
    eEntityType_None = 0,
    eEntityType_3DObject = 1,
    eEntityType_Camera = 2,
    eEntityType_Material = 4,
    eEntityType_SceneNode = 8,
    eEntityType_LightSource = 16,
    eEntityType_LinePath = 32,
    eEntityType_Transform = 64,
    eEntityType_SkeletonJoint = 128,
    eEntityType_VectorsTable = 256,
    eEntityType_PolygonsTable = 512,
    eEntityType_TextureCoordinatesTable = 1024,
    eEntityType_SceneState = 2048,
    eEntityType_Light = 8192,
    eEntityType_Geometry = 1073741824
};

} // namespace Orvel
