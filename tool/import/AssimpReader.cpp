#include "tool/import/AssimpReader.h"

#include "tool/import/AssimpAnimations.h"
#include "tool/import/AssimpFiles.h"
#include "tool/import/AssimpFrame.h"
#include "tool/import/AssimpLoaders.h"
#include "tool/import/AssimpMaterial.h"
#include "tool/import/AssimpMesh.h"
#include "tool/import/AssimpNodes.h"
#include "tool/import/AssimpText.h"
#include "tool/import/MeshFileChecks.h"

#include <assimp/BaseImporter.h>
#include <assimp/Importer.hpp>
#include <assimp/config.h>
#include <assimp/importerdesc.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <algorithm>
#include <memory>
#include <new>
#include <span>
#include <sstream>
#include <string_view>
#include <utility>

namespace Orvel::Import
{

namespace
{

void SwitchOffLoaders(Assimp::Importer& importer)
{
    for (std::size_t k = importer.GetImporterCount(); k-- > 0;) {
        if (FindAssimpLoader(importer.GetImporterInfo(k)->mName).enabled)
            continue;
        // Unregistering hands the loader over to the caller.
        const std::unique_ptr<Assimp::BaseImporter> loader(importer.GetImporter(k));
        importer.UnregisterLoader(loader.get());
    }
}

void Configure(Assimp::Importer& importer)
{
    SwitchOffLoaders(importer);
    // Files without meshes are to stay so: no stand-in geometry for their bones.
    importer.SetPropertyBool(AI_CONFIG_IMPORT_NO_SKELETON_MESHES, true);
    importer.SetPropertyBool(AI_CONFIG_IMPORT_COLLADA_USE_COLLADA_NAMES, true);
}

AssimpLoader LoaderUsed(const Assimp::Importer& importer)
{
    const int index = importer.GetPropertyInteger("importerIndex", -1);
    const aiImporterDesc* description = index < 0 ? nullptr : importer.GetImporterInfo(static_cast<std::size_t>(index));
    return FindAssimpLoader(description != nullptr ? description->mName : "");
}

[[noreturn]] void ThrowError(const Assimp::Importer& importer, const std::filesystem::path& file)
{
    const std::string_view message = importer.GetErrorString();
    // The library catches it and keeps the text.
    if (message.find("bad_alloc") != std::string_view::npos)
        throw std::bad_alloc();
    throw ImportError(ErrorTextFrom(message, file.string()));
}

bool IsEmpty(const aiScene& scene)
{
    return std::ranges::all_of(std::span(scene.mMeshes, scene.mNumMeshes),
                               [](const aiMesh* mesh) { return mesh->mNumVertices == 0; });
}

std::vector<MeshSurvey> SurveyMeshes(const aiScene& scene)
{
    std::vector<MeshSurvey> surveys;
    surveys.reserve(scene.mNumMeshes);
    for (unsigned k = 0; k < scene.mNumMeshes; ++k)
        surveys.push_back(SurveyMesh(*scene.mMeshes[k]));
    return surveys;
}

void SplitPolygons(Assimp::Importer& importer, std::span<const MeshSurvey> surveys, const std::filesystem::path& file)
{
    if (std::ranges::any_of(surveys, &MeshSurvey::hasPolygons) &&
        importer.ApplyPostProcessing(aiProcess_Triangulate) == nullptr)
        ThrowError(importer, file);
}

/// The part that stands for each mesh wherever a node names it. Every mesh is released as soon as it is taken.
std::vector<ImportedPart> TakeMeshes(aiScene& scene, const AssimpLoader& loader, std::span<const MeshSurvey> surveys,
                                     std::span<const TakenMaterial> materials, ImportedScene& imported,
                                     ImportReport& report)
{
    std::vector<ImportedPart> parts;
    parts.reserve(scene.mNumMeshes);
    for (unsigned k = 0; k < scene.mNumMeshes; ++k) {
        const std::unique_ptr<aiMesh> mesh(std::exchange(scene.mMeshes[k], nullptr));
        const TakenMaterial material =
            mesh->mMaterialIndex < materials.size() ? materials[mesh->mMaterialIndex] : TakenMaterial{};
        ImportedPart part = TakeMesh(*mesh, surveys[k], material.set, loader, imported, report);
        part.material = material.material;
        if (!loader.meshNamesAreNumbers)
            part.name = Utf8From(mesh->mName);
        parts.push_back(std::move(part));
    }
    return parts;
}

void CountLeftOut(const aiScene& scene, ImportReport& report)
{
    report.CountLeftOut("light", "lights", scene.mNumLights);
}

/// Meshes that no node places are not part of the scene.
void CountUnused(const ImportedScene& imported, ImportReport& report)
{
    std::vector<bool> used(imported.geometries.size());
    for (const ImportedNode& node : imported.nodes)
        for (const ImportedPart& part : node.parts)
            used[static_cast<std::size_t>(part.geometry)] = true;
    report.CountLeftOut("mesh that no node uses", "meshes that no node uses",
                        static_cast<std::size_t>(std::ranges::count(used, false)));
}

} // namespace

ImportedScene ReadWithAssimp(const std::filesystem::path& file, ImportReport& report)
{
    CheckMeshFile(file);
    Assimp::Importer importer;
    Configure(importer);
    auto ownFiles = std::make_unique<AssimpFiles>(file);
    const AssimpFiles& files = *ownFiles;
    // The importer keeps it as its own.
    importer.SetIOHandler(ownFiles.release());
    const aiScene* read = importer.ReadFile(file.string(), 0);
    if (read == nullptr)
        ThrowError(importer, file);
    files.WarnOfMissing(report);
    const AssimpLoader loader = LoaderUsed(importer);
    if (loader.hasOnlyMeshes && IsEmpty(*read))
        throw ImportError("the file holds no triangles");
    const std::vector<MeshSurvey> surveys = SurveyMeshes(*read);
    SplitPolygons(importer, surveys, file);

    // The scene now belongs to us, so that its arrays can be given back one by one.
    const std::unique_ptr<aiScene> scene(importer.GetOrphanedScene());
    if (scene == nullptr || scene->mRootNode == nullptr)
        throw ImportError("there is no scene in the file");
    ImportedScene imported;
    imported.format = loader.format;
    const SceneFrame frame = ReadSceneFrame(*scene, loader, file, report);
    imported.unitInMillimetres = frame.unitInMillimetres;
    imported.upAxis = frame.upAxis;
    const auto materials = TakeMaterials(*scene, loader, imported, report);
    const auto meshes = TakeMeshes(*scene, loader, surveys, materials, imported, report);
    const auto sources = TakeNodes(*scene, loader, frame, meshes, imported);
    TakeAnimations(*scene, sources, imported, report);
    CountLeftOut(*scene, report);
    CountUnused(imported, report);
    return imported;
}

std::vector<SceneFormat> ListAssimpFormats()
{
    const Assimp::Importer importer;
    std::vector<SceneFormat> formats;
    for (std::size_t k = 0; k < importer.GetImporterCount(); ++k) {
        const aiImporterDesc& description = *importer.GetImporterInfo(k);
        const AssimpLoader loader = FindAssimpLoader(description.mName);
        if (!loader.enabled)
            continue;
        SceneFormat format{std::string(loader.format), {}};
        std::istringstream extensions(description.mFileExtensions);
        for (std::string extension; extensions >> extension;)
            format.extensions.push_back(extension);
        std::ranges::sort(format.extensions);
        formats.push_back(std::move(format));
    }
    std::ranges::sort(formats, {}, &SceneFormat::description);
    return formats;
}

} // namespace Orvel::Import
