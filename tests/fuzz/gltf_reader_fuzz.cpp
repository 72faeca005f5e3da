#include "tests/fuzz/MemoryFile.h"
#include "tool/animation/AnimatedScene.h"
#include "tool/import/DocumentBuilder.h"
#include "tool/import/GltfReader.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

/// Reads glTF files that the fuzzer makes up, text and binary, and builds document and animation of what was read.
/// Pictures are left out: a library decodes them. Whatever is wrong with a file is told by ImportError.
namespace
{

using namespace Orvel;
using namespace Orvel::Import;

void Require(bool condition)
{
    if (!condition)
        std::abort();
}

template <class Table>
void RequireIndex(Index index, const Table& table)
{
    Require(index == None || (index >= 0 && static_cast<std::size_t>(index) < table.size()));
}

void RequireFinite(const std::vector<double>& values)
{
    Require(std::ranges::all_of(values, [](double value) { return std::isfinite(value); }));
}

/// What readers promise of a scene.
void Check(const ImportedScene& scene)
{
    for (const ImportedGeometry& shape : scene.geometries) {
        RequireFinite(shape.positions);
        RequireFinite(shape.normals);
        Require(shape.normals.empty() || shape.normals.size() == shape.positions.size());
        for (const std::uint32_t point : shape.triangles)
            Require(3 * std::size_t{point} + 2 < shape.positions.size());
    }
    for (const ImportedTextureCoordinates& coordinates : scene.textureCoordinates)
        RequireFinite(coordinates.values);
    for (const ImportedMaterial& material : scene.materials)
        RequireIndex(material.image, scene.images);
    for (const ImportedNode& node : scene.nodes) {
        RequireIndex(node.camera, scene.cameras);
        for (const Index child : node.children)
            RequireIndex(child, scene.nodes);
        for (const ImportedPart& part : node.parts) {
            RequireIndex(part.geometry, scene.geometries);
            RequireIndex(part.textureCoordinates, scene.textureCoordinates);
            RequireIndex(part.material, scene.materials);
            RequireIndex(part.variants, scene.variantMaterials);
        }
    }
}

void Use(ImportedScene scene, ImportReport& report)
{
    Check(scene);
    scene.images.clear();
    for (ImportedMaterial& material : scene.materials)
        material.image = None;
    TextureFiles noTextures({}, {}, {}, report);
    const BuiltDocument built = BuildDocument(std::move(scene), noTextures, {});
    Animate::AnimationOptions options;
    options.mostFrames = 200;
    const Animate::AnimatedScene animated = Animate::MakeAnimatedScene(built, options, report);
    Require(animated.manager->LastFrame() < options.mostFrames);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const Test::MemoryFile file;
    file.Fill(data, size);
    ImportReport report;
    try {
        if (IsGltf(file.Path()))
            Use(ReadGltf(file.Path(), report), report);
    } catch (const ImportError&) {
        return 0;
    }
    return 0;
}
