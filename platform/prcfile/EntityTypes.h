#pragma once

#include <cstdint>

namespace prc
{

/// The numbers that stand in front of the entities of a PRC file and say what follows.
enum class EntityType : std::uint32_t
{
    BaseWithGraphics = 2,
    Tessellation3D = 172,
    Tessellation3DCompressed = 173,
    TessellationFace = 174,
    Tessellation3DWire = 175,
    TessellationMarkup = 176,
    Attribute = 201,
    CartesianTransformation = 202,
    EntityReference = 203,
    MarkupLinkedItem = 204,
    ReferenceOnBase = 205,
    ReferenceOnTopology = 206,
    GeneralTransformation = 207,
    RepresentationItem = 231,
    BrepModel = 232,
    Curve = 233,
    Direction = 234,
    Plane = 235,
    PointSet = 236,
    PolyBrepModel = 237,
    PolyWire = 238,
    Set = 239,
    CoordinateSystem = 240,
    ModelFile = 301,
    FileStructure = 302,
    FileStructureGlobals = 303,
    FileStructureTree = 304,
    FileStructureTessellation = 305,
    FileStructureGeometry = 306,
    FileStructureExtraGeometry = 307,
    ProductOccurrence = 310,
    PartDefinition = 311,
    Filter = 320,
    View = 501,
    Style = 701,
    Material = 702,
    Picture = 703,
    TextureApplication = 711,
    TextureDefinition = 712,
    TextureTransformation = 713,
    LinePattern = 721,
    DottingPattern = 723,
    HatchingPattern = 724,
    SolidPattern = 725,
    VPicturePattern = 726
};

} // namespace prc
