#include "tool/convert/AssimpFile.h"

#include "tool/convert/CheckedFiles.h"
#include "tool/convert/FlatMeshes.h"

#include <assimp/Exporter.hpp>
#include <assimp/material.h>
#include <assimp/mesh.h>
#include <assimp/scene.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <fstream>
#include <limits>
#include <memory>
#include <system_error>
#include <utility>

namespace Orvel::Convert
{

namespace
{

using Path = std::filesystem::path;

const char* AssimpName(FlatFormat format)
{
    switch (format) {
    case FlatFormat::ObjWithoutMaterials:
        return "objnomtl";
    case FlatFormat::Stl:
        return "stlb";
    case FlatFormat::Ply:
        return "plyb";
    case FlatFormat::Obj:
        break;
    }
    return "obj";
}

aiColor3D ToAssimp(const Colour& colour)
{
    return {static_cast<ai_real>(colour[0]), static_cast<ai_real>(colour[1]), static_cast<ai_real>(colour[2])};
}

/// Names stand in lines of text files there.
aiString NameFor(const std::string& name)
{
    std::string text = name;
    std::ranges::replace_if(
        text, [](char c) { return static_cast<unsigned char>(c) < 0x20; }, '_');
    return aiString(text.substr(0, MAXLEN - 1));
}

std::vector<aiVector3D> VectorsOf(const auto& numbers, std::size_t stride)
{
    std::vector<aiVector3D> vectors(numbers.size() / stride);
    for (std::size_t i = 0; i < vectors.size(); ++i)
        vectors[i] = {static_cast<ai_real>(numbers[stride * i]), static_cast<ai_real>(numbers[stride * i + 1]),
                      stride > 2 ? static_cast<ai_real>(numbers[stride * i + stride - 1]) : ai_real{0}};
    return vectors;
}

aiVector3D* Handed(const std::vector<aiVector3D>& vectors)
{
    auto* const array = new aiVector3D[vectors.size()];
    std::ranges::copy(vectors, array);
    return array;
}

class FlatSceneBuilder
{
public:
    FlatSceneBuilder(const MeshScene& source, FlatFormat targetFormat, Import::ImportReport& importReport)
        : scene(source)
        , format(targetFormat)
        , report(importReport)
        , placed(PlacePrimitives(source))
    {}

    /// @param pictureNames of the files that hold the pictures.
    std::unique_ptr<aiScene> Run(const std::vector<std::string>& pictureNames)
    {
        auto target = std::make_unique<aiScene>();
        AddMaterials(*target, pictureNames);
        std::vector<std::pair<std::uint32_t, std::unique_ptr<aiMesh>>> meshes;
        for (const PlacedPrimitive& primitive : placed) {
            if (auto mesh = MeshOf(primitive))
                meshes.emplace_back(primitive.node, std::move(mesh));
        }
        if (meshes.empty())
            throw ConvertError("it holds no mesh, and the format holds nothing else");
        AddMeshes(*target, meshes);
        Report();
        return target;
    }

private:
    void AddMaterials(aiScene& target, const std::vector<std::string>& pictureNames) const
    {
        // Meshes without a material name one too.
        target.mMaterials = new aiMaterial* [scene.materials.size() + 1] {};
        for (const Material& source : scene.materials) {
            auto* const material = target.mMaterials[target.mNumMaterials++] = new aiMaterial;
            const aiString name =
                NameFor(source.name.empty() ? "material " + std::to_string(target.mNumMaterials) : source.name);
            const aiColor3D ambient = ToAssimp(source.ambient);
            const aiColor3D diffuse = ToAssimp(source.diffuse);
            const aiColor3D specular = ToAssimp(source.specular);
            const aiColor3D emissive = ToAssimp(source.emissive);
            const auto opacity = static_cast<ai_real>(source.opacity);
            const auto shininess = static_cast<ai_real>(128.0 * source.shininess);
            material->AddProperty(&name, AI_MATKEY_NAME);
            material->AddProperty(&ambient, 1, AI_MATKEY_COLOR_AMBIENT);
            material->AddProperty(&diffuse, 1, AI_MATKEY_COLOR_DIFFUSE);
            material->AddProperty(&specular, 1, AI_MATKEY_COLOR_SPECULAR);
            material->AddProperty(&emissive, 1, AI_MATKEY_COLOR_EMISSIVE);
            material->AddProperty(&opacity, 1, AI_MATKEY_OPACITY);
            material->AddProperty(&shininess, 1, AI_MATKEY_SHININESS);
            if (source.picture != None && source.picture < pictureNames.size()) {
                const aiString picture(pictureNames[source.picture]);
                material->AddProperty(&picture, AI_MATKEY_TEXTURE_DIFFUSE(0));
            }
        }
        target.mMaterials[target.mNumMaterials++] = new aiMaterial;
        const aiString name("default");
        target.mMaterials[target.mNumMaterials - 1]->AddProperty(&name, AI_MATKEY_NAME);
    }

    /// @return null for what single precision cannot hold at this place.
    std::unique_ptr<aiMesh> MeshOf(const PlacedPrimitive& primitive)
    {
        const std::vector<double> positions = WorldPositions(primitive);
        const bool fits = std::ranges::all_of(
            positions, [](double value) { return std::abs(value) <= double{std::numeric_limits<float>::max()}; });
        if (!fits) {
            ++beyondRange;
            return nullptr;
        }
        auto mesh = std::make_unique<aiMesh>();
        const Primitive& source = *primitive.source;
        mesh->mName = NameFor(scene.nodes[primitive.node].name);
        mesh->mPrimitiveTypes = aiPrimitiveType_TRIANGLE;
        mesh->mMaterialIndex =
            source.material == None ? static_cast<unsigned>(scene.materials.size()) : source.material;
        mesh->mNumVertices = static_cast<unsigned>(positions.size() / 3);
        mesh->mVertices = Handed(VectorsOf(positions, 3));
        AddAttributes(*mesh, primitive);
        AddFaces(*mesh, source, Mirrors(primitive.world));
        return mesh;
    }

    void AddAttributes(aiMesh& mesh, const PlacedPrimitive& primitive)
    {
        const Primitive& source = *primitive.source;
        if (!source.normals.empty())
            mesh.mNormals = Handed(VectorsOf(WorldNormals(primitive), 3));
        if (format == FlatFormat::Stl)
            return;
        if (!source.textureCoordinates.empty()) {
            mesh.mTextureCoords[0] = Handed(VectorsOf(source.textureCoordinates, 2));
            mesh.mNumUVComponents[0] = 2;
        }
        if (!source.colours.empty()) {
            auto* const colours = mesh.mColors[0] = new aiColor4D[mesh.mNumVertices];
            for (std::size_t i = 0; i < mesh.mNumVertices; ++i) {
                const std::uint8_t* const colour = source.colours.data() + 4 * i;
                for (unsigned channel = 0; channel < 4; ++channel)
                    colours[i][channel] = static_cast<float>(colour[channel]) / 255.0F;
            }
        }
    }

    static void AddFaces(aiMesh& mesh, const Primitive& source, bool turnRound)
    {
        mesh.mFaces = new aiFace[source.indices.size() / 3];
        for (std::size_t corner = 0; corner + 2 < source.indices.size(); corner += 3) {
            aiFace& face = mesh.mFaces[mesh.mNumFaces++];
            face.mIndices = new unsigned[3];
            face.mNumIndices = 3;
            std::copy_n(&source.indices[corner], 3, face.mIndices);
            if (turnRound)
                std::swap(face.mIndices[1], face.mIndices[2]);
        }
    }

    void AddMeshes(aiScene& target, std::vector<std::pair<std::uint32_t, std::unique_ptr<aiMesh>>>& meshes) const
    {
        target.mRootNode = new aiNode("scene");
        target.mRootNode->mChildren = new aiNode* [meshes.size()] {};
        target.mMeshes = new aiMesh* [meshes.size()] {};
        for (auto& [node, mesh] : meshes) {
            auto child = std::make_unique<aiNode>();
            child->mName = mesh->mName;
            child->mParent = target.mRootNode;
            child->mMeshes = new unsigned[1]{target.mNumMeshes};
            child->mNumMeshes = 1;
            target.mRootNode->mChildren[target.mRootNode->mNumChildren++] = child.release();
            target.mMeshes[target.mNumMeshes++] = mesh.release();
        }
    }

    void Report()
    {
        if (beyondRange > 0)
            report.CountLeftOut("object beyond the range of single precision",
                                "objects beyond the range of single precision", beyondRange);
        const bool holdsMaterials = format == FlatFormat::Obj;
        if (!holdsMaterials && !scene.materials.empty())
            report.CountLeftOut("material", "materials", scene.materials.size());
        if (!holdsMaterials && !scene.pictures.empty())
            report.CountLeftOut("texture", "textures", scene.pictures.size());
        if (scene.meshes.size() < placed.size() && scene.nodes.size() > scene.meshes.size())
            report.Warn("the format has no shared meshes: " + std::to_string(placed.size()) + " are written");
    }

    const MeshScene& scene;
    FlatFormat format;
    Import::ImportReport& report;
    std::vector<PlacedPrimitive> placed;
    std::size_t beyondRange = 0;
};

/// @return the names of the files, by picture.
std::vector<std::string> WritePictures(const MeshScene& scene, const Path& file)
{
    std::vector<std::string> names;
    for (const Picture& picture : scene.pictures) {
        const std::string number = std::to_string(names.size() + 1);
        names.push_back(file.stem().string() + "-" + number + (picture.isJpeg ? ".jpg" : ".png"));
        std::ofstream stream(file.parent_path() / names.back(), std::ios::binary);
        stream.write(reinterpret_cast<const char*>(picture.file.data()),
                     static_cast<std::streamsize>(picture.file.size()));
        stream.close();
        if (!stream)
            throw ConvertError("texture '" + names.back() + "' could not be written");
    }
    return names;
}

} // namespace

std::vector<std::string> WriteFlat(const MeshScene& scene, FlatFormat format, const Path& file,
                                   Import::ImportReport& report)
{
    std::vector<std::string> sideFiles;
    if (format == FlatFormat::Obj)
        sideFiles = WritePictures(scene, file);
    const std::unique_ptr<aiScene> flat = FlatSceneBuilder(scene, format, report).Run(sideFiles);
    int writeError = 0;
    Assimp::Exporter exporter;
    exporter.SetIOHandler(new CheckedFiles(writeError)); // is the exporter's from here on
    const aiReturn result = exporter.Export(flat.get(), AssimpName(format), file.string());
    if (writeError != 0)
        throw ConvertError("the file could not be written: " + std::generic_category().message(writeError));
    if (result != aiReturn_SUCCESS)
        throw ConvertError("the file could not be written: " + std::string(exporter.GetErrorString()));
    if (format == FlatFormat::Obj)
        sideFiles.push_back(file.stem().string() + ".mtl");
    return sideFiles;
}

} // namespace Orvel::Convert
