#include "tool/import/AssimpLoaders.h"

#include <algorithm>
#include <array>

namespace Orvel::Import
{

namespace
{

constexpr double Metre = 1000.0;

constexpr bool Enabled = true;
constexpr bool Disabled = false;

// Units and axes stand here only where the format itself fixes them, or where the loader turns every file the same way.
constexpr auto Loaders = std::to_array<AssimpLoader>({
    // Its parser reads past the end of every well-formed line: a crash on each of the sample files.
    {"Raw Importer", "Raw Triangles", Disabled},
    // A dump of the library's own memory: counts and sizes are believed unchecked, and no other program writes it.
    {"Assimp Binary Importer", "Assimp Binary", Disabled},
    // Read by the reader of our own, in full.
    {"glTF2 Importer", "glTF 2.0", Disabled},

    {.name = "Wavefront Object Importer",
     .format = "Wavefront OBJ",
     .rootIsInvented = true,
     .greysUndefinedMaterials = true,
     .hasOnlyMeshes = true},
    {.name = "Stereolithography (STL) Importer",
     .format = "Stereolithography STL",
     .rootIsInvented = true,
     .hasOnlyMeshes = true,
     .normalsAreOfFaces = true},
    {.name = "Stanford Polygon Library (PLY) Importer",
     .format = "Stanford PLY",
     .rootIsInvented = true,
     .inventsMaterials = true,
     .hasOnlyMeshes = true},
    {.name = "OFF Importer",
     .format = "Object File Format OFF",
     .rootIsInvented = true,
     .inventsMaterials = true,
     .hasOnlyMeshes = true},
    {.name = "Autodesk FBX Importer",
     .format = "Autodesk FBX",
     .rootIsInvented = true,
     .namesItsMaterials = true,
     .zeroOpacityIsOpaque = true},
    {.name = "Collada Importer",
     .format = "COLLADA",
     .root = RootContent::UnitAndAxis,
     .rootIsInvented = true,
     .namesItsMaterials = true,
     .zeroOpacityIsOpaque = true},
    {.name = "Discreet 3DS Importer",
     .format = "3D Studio 3DS",
     .upAxis = UpAxis::Z,
     .root = RootContent::Turned,
     .cameras = CameraFrames::Direction,
     .rootIsInvented = true,
     .meshNamesAreNumbers = true},
    {.name = "ASE Importer",
     .format = "3D Studio ASE",
     .upAxis = UpAxis::Z,
     .root = RootContent::Turned,
     .rootIsInvented = true},
    {.name = "glTF Importer", .format = "glTF 1.0", .unitInMillimetres = Metre, .upAxis = UpAxis::Y},
    {.name = "Extensible 3D(X3D) Importer",
     .format = "X3D",
     .unitInMillimetres = Metre,
     .upAxis = UpAxis::Y,
     .rootIsInvented = true},
    {.name = "3mf Importer",
     .format = "3D Manufacturing Format 3MF",
     .unitInMillimetres = 1.0,
     .upAxis = UpAxis::Z,
     .rootIsInvented = true},
    {.name = "Additive manufacturing file format(AMF) Importer",
     .format = "Additive Manufacturing File AMF",
     .unitInMillimetres = 1.0,
     .upAxis = UpAxis::Z,
     .rootIsInvented = true},
    {.name = "Industry Foundation Classes (IFC) Importer",
     .format = "Industry Foundation Classes IFC",
     .upAxis = UpAxis::Z,
     .root = RootContent::MetresAndTurned},
    {.name = "Blender 3D Importer (http://www.blender3d.org)",
     .format = "Blender",
     .upAxis = UpAxis::Z,
     .rootIsInvented = true},
    {.name = "Drawing Interchange Format (DXF) Importer",
     .format = "Drawing Interchange Format DXF",
     .upAxis = UpAxis::Z,
     .root = RootContent::Turned,
     .rootIsInvented = true},
    {.name = "Direct3D XFile Importer", .format = "DirectX X", .upAxis = UpAxis::Y},
    {.name = "LightWave/Modo Object Importer",
     .format = "LightWave Object LWO",
     .unitInMillimetres = Metre,
     .upAxis = UpAxis::Y},
    {.name = "LightWave Scene Importer",
     .format = "LightWave Scene LWS",
     .unitInMillimetres = Metre,
     .upAxis = UpAxis::Y,
     .rootIsInvented = true},
    {.name = "AC3D Importer", .format = "AC3D", .upAxis = UpAxis::Y},
    {.name = "BlitzBasic 3D Importer", .format = "BlitzBasic 3D B3D", .upAxis = UpAxis::Y},
    {.name = "Ogre3D Mesh Importer", .format = "Ogre Mesh", .upAxis = UpAxis::Y},
    {.name = "Irrlicht Mesh Reader", .format = "Irrlicht Mesh", .upAxis = UpAxis::Y, .rootIsInvented = true},
    {.name = "Irrlicht Scene Reader", .format = "Irrlicht Scene", .upAxis = UpAxis::Y, .rootIsInvented = true},
    {.name = "MMD Importer", .format = "MikuMikuDance PMX", .upAxis = UpAxis::Y},
    {.name = "Quake II Mesh Importer",
     .format = "Quake II MD2",
     .upAxis = UpAxis::Z,
     .root = RootContent::Turned,
     .rootIsInvented = true,
     .hasOnlyMeshes = true},
    {.name = "Quake III Mesh Importer",
     .format = "Quake III MD3",
     .upAxis = UpAxis::Z,
     .root = RootContent::Turned,
     .rootIsInvented = true},
    {.name = "Return To Castle Wolfenstein Mesh Importer",
     .format = "Return to Castle Wolfenstein MDC",
     .upAxis = UpAxis::Z,
     .root = RootContent::Turned,
     .rootIsInvented = true,
     .hasOnlyMeshes = true},
    {.name = "Doom 3 / MD5 Mesh Importer",
     .format = "Doom 3 MD5",
     .upAxis = UpAxis::Z,
     .root = RootContent::Turned,
     .rootIsInvented = true},
    {.name = "Inter-Quake Model Importer",
     .format = "Inter-Quake Model IQM",
     .upAxis = UpAxis::Z,
     .root = RootContent::Turned,
     .rootIsInvented = true},
    {.name = "Valve SMD Importer",
     .format = "Valve SMD",
     .upAxis = UpAxis::Z,
     .root = RootContent::Turned,
     .rootIsInvented = true},
    {.name = "Quake Mesh / 3D GameStudio Mesh Importer",
     .format = "Quake and 3D GameStudio MDL",
     .upAxis = UpAxis::Z,
     .root = RootContent::Turned,
     .rootIsInvented = true,
     .hasOnlyMeshes = true},
    {.name = "3D GameStudio Heightmap (HMP) Importer", .format = "3D GameStudio Terrain HMP", .hasOnlyMeshes = true},
    {.name = "Neutral File Format Importer", .format = "Neutral File Format NFF", .rootIsInvented = true},
    {.name = "Silo SIB Importer", .format = "Silo SIB"},
    {.name = "BVH Importer (MoCap)", .format = "Biovision Motion Capture BVH"},
    {.name = "Quick3D Importer", .format = "Quick3D"},
    {.name = "Terragen Heightmap Importer", .format = "Terragen Terrain", .hasOnlyMeshes = true},
    {.name = "CharacterStudio Motion Importer (MoCap)", .format = "Character Studio Motion Capture CSM"},
    {.name = "Unreal Mesh Importer", .format = "Unreal Mesh", .rootIsInvented = true, .hasOnlyMeshes = true},
    {.name = "Open Game Engine Exchange",
     .format = "Open Game Engine Exchange OpenGEX",
     .cameras = CameraFrames::Standard,
     .rootIsInvented = true},
    {.name = "Milkshape 3D Importer", .format = "MilkShape 3D", .rootIsInvented = true},
    {.name = "TrueSpace Object Importer", .format = "trueSpace COB", .rootIsInvented = true},
    {.name = "Quake III BSP Importer", .format = "Quake III BSP"},
    {.name = "Nendo Mesh Importer", .format = "Nendo NDO", .hasOnlyMeshes = true},
    {.name = "XGL Importer", .format = "XGL"},
});

} // namespace

std::span<const AssimpLoader> KnownAssimpLoaders()
{
    return Loaders;
}

AssimpLoader FindAssimpLoader(std::string_view name)
{
    const auto found = std::ranges::find(Loaders, name, &AssimpLoader::name);
    return found != Loaders.end() ? *found : AssimpLoader{.name = name, .format = name};
}

} // namespace Orvel::Import
