#include "tool/import/GltfReader.h"

#include "tool/import/DistinctNames.h"
#include "tool/import/GltfAccessors.h"
#include "tool/import/GltfAnimations.h"
#include "tool/import/GltfBuffers.h"
#include "tool/import/GltfContainer.h"
#include "tool/import/GltfDocument.h"
#include "tool/import/GltfMaterials.h"
#include "tool/import/GltfMeshes.h"
#include "tool/import/GltfNodes.h"

#include <filesystem>
#include <string>

namespace Orvel::Import
{

namespace
{

void WarnOfUnknownExtensions(const GltfDocument& document, ImportReport& report)
{
    for (const std::string& name : document.model.extensionsRequired)
        if (!IsKnownExtension(name))
            report.Warn("the file requires the extension " + Quoted(name) +
                        ", which is not known: what it holds may be missing or wrong");
}

} // namespace

ImportedScene ReadGltf(const std::filesystem::path& file, ImportReport& report)
{
    GltfContainer container(file);
    const GltfDocument document = ParseGltf(container.Text());
    container.ReleaseText();
    WarnOfUnknownExtensions(document, report);

    ImportedScene scene;
    scene.format = "glTF 2.0";
    scene.unitInMillimetres = 1000.0;
    scene.upAxis = UpAxis::Y;
    scene.variants = DistinctNames(document.variants, "Variant");

    const std::filesystem::path folder = file.parent_path();
    GltfBuffers buffers(document, container, folder);
    GltfAccessors accessors(document, buffers, container.Size());
    GltfMaterials materials(document, buffers, folder, scene, report);
    GltfMeshes meshes(document, accessors, materials, scene, report);
    GltfNodes nodes(document, accessors, meshes, scene, report);
    nodes.Convert();

    GltfAnimations(document, accessors, nodes.ImportedNodes(), materials, scene, report).Convert();
    if (scene.geometries.empty() && meshes.CompressedCount() > 0)
        throw ImportError("all meshes are compressed, and compressed meshes cannot be read");
    return scene;
}

} // namespace Orvel::Import
