#include "tool/convert/GltfFile.h"

#include "tool/convert/GltfMaterial.h"
#include "tool/import/MaterialConversion.h"

#include <tiny_gltf.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <map>
#include <span>
#include <tuple>
#include <utility>
#include <vector>

namespace Orvel::Convert
{

namespace
{

/// The library counts bytes in int.
constexpr std::uint64_t LargestBuffer = std::uint64_t{INT32_MAX} - 4096;

int WrapNumber(Wrap wrap)
{
    switch (wrap) {
    case Wrap::Clamp:
        return TINYGLTF_TEXTURE_WRAP_CLAMP_TO_EDGE;
    case Wrap::Mirror:
        return TINYGLTF_TEXTURE_WRAP_MIRRORED_REPEAT;
    case Wrap::Repeat:
        break;
    }
    return TINYGLTF_TEXTURE_WRAP_REPEAT;
}

std::uint16_t LinearChannel(std::uint8_t encoded)
{
    return static_cast<std::uint16_t>(std::lround(Import::LinearFromSrgb(encoded / 255.0) * 65535.0));
}

class GltfWriter
{
public:
    explicit GltfWriter(const MeshScene& written)
        : scene(written)
    {}

    tinygltf::Model Run()
    {
        model.asset.version = "2.0";
        model.asset.generator = "orvelprc";
        ReserveBuffer();
        for (const Picture& picture : scene.pictures)
            AddPicture(picture);
        for (const Material& material : scene.materials)
            AddMaterial(material);
        for (const Mesh& mesh : scene.meshes)
            AddMesh(mesh);
        AddNodes();
        if (!buffer.data.empty())
            model.buffers.push_back(std::move(buffer));
        return std::move(model);
    }

private:
    void ReserveBuffer()
    {
        std::uint64_t size = 0;
        for (const Picture& picture : scene.pictures)
            size += picture.file.size() + 3;
        for (const Mesh& mesh : scene.meshes) {
            for (const Primitive& primitive : mesh.primitives)
                size += 4 * (primitive.positions.size() + primitive.normals.size() +
                             primitive.textureCoordinates.size() + primitive.indices.size()) +
                        2 * primitive.colours.size();
        }
        if (size > LargestBuffer)
            throw ConvertError("the glTF file would need a buffer of " + std::to_string(size) +
                               " bytes, and 2 GB is the most");
        buffer.data.reserve(size);
    }

    /// @return its buffer view.
    int AddBytes(std::span<const unsigned char> bytes, int target)
    {
        tinygltf::BufferView view;
        view.buffer = 0;
        view.byteOffset = buffer.data.size();
        view.byteLength = bytes.size();
        view.target = target;
        buffer.data.insert(buffer.data.end(), bytes.begin(), bytes.end());
        while (buffer.data.size() % 4 != 0)
            buffer.data.push_back(0);
        model.bufferViews.push_back(std::move(view));
        return static_cast<int>(model.bufferViews.size() - 1);
    }

    /// @return its accessor.
    template <typename Number>
    int AddArray(const std::vector<Number>& numbers, int componentType, int type, int target)
    {
        const auto* const bytes = reinterpret_cast<const unsigned char*>(numbers.data());
        tinygltf::Accessor accessor;
        accessor.bufferView = AddBytes({bytes, numbers.size() * sizeof(Number)}, target);
        accessor.componentType = componentType;
        accessor.type = type;
        accessor.count = numbers.size() /
                         static_cast<std::size_t>(tinygltf::GetNumComponentsInType(static_cast<std::uint32_t>(type)));
        model.accessors.push_back(std::move(accessor));
        return static_cast<int>(model.accessors.size() - 1);
    }

    int AddPositions(const std::vector<double>& positions)
    {
        const std::vector<float> numbers(positions.begin(), positions.end());
        const int index =
            AddArray(numbers, TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_VEC3, TINYGLTF_TARGET_ARRAY_BUFFER);
        tinygltf::Accessor& accessor = model.accessors[static_cast<std::size_t>(index)];
        accessor.minValues.assign(numbers.begin(), numbers.begin() + 3);
        accessor.maxValues = accessor.minValues;
        for (std::size_t i = 3; i < numbers.size(); ++i) {
            accessor.minValues[i % 3] = std::min<double>(accessor.minValues[i % 3], numbers[i]);
            accessor.maxValues[i % 3] = std::max<double>(accessor.maxValues[i % 3], numbers[i]);
        }
        return index;
    }

    int AddIndices(const std::vector<std::uint32_t>& indices, std::size_t points)
    {
        constexpr int Target = TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER;
        // The largest number of a type is not to be used.
        if (points > UINT16_MAX)
            return AddArray(indices, TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT, TINYGLTF_TYPE_SCALAR, Target);
        std::vector<std::uint16_t> narrow(indices.size());
        std::ranges::transform(indices, narrow.begin(),
                               [](std::uint32_t index) { return static_cast<std::uint16_t>(index); });
        return AddArray(narrow, TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT, TINYGLTF_TYPE_SCALAR, Target);
    }

    tinygltf::Primitive PrimitiveOf(const Primitive& source)
    {
        constexpr int Float = TINYGLTF_COMPONENT_TYPE_FLOAT;
        constexpr int Target = TINYGLTF_TARGET_ARRAY_BUFFER;
        tinygltf::Primitive primitive;
        primitive.mode = TINYGLTF_MODE_TRIANGLES;
        primitive.material = source.material == None ? -1 : static_cast<int>(source.material);
        primitive.attributes["POSITION"] = AddPositions(source.positions);
        if (!source.normals.empty())
            primitive.attributes["NORMAL"] = AddArray(source.normals, Float, TINYGLTF_TYPE_VEC3, Target);
        if (!source.textureCoordinates.empty()) {
            std::vector<float> fromTop = source.textureCoordinates;
            for (std::size_t v = 1; v < fromTop.size(); v += 2)
                fromTop[v] = static_cast<float>(1.0 - double{fromTop[v]});
            primitive.attributes["TEXCOORD_0"] = AddArray(fromTop, Float, TINYGLTF_TYPE_VEC2, Target);
        }
        if (!source.colours.empty()) {
            std::vector<std::uint16_t> linear(source.colours.size());
            for (std::size_t i = 0; i < linear.size(); ++i)
                linear[i] =
                    i % 4 == 3 ? static_cast<std::uint16_t>(source.colours[i] * 257) : LinearChannel(source.colours[i]);
            const int index = AddArray(linear, TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT, TINYGLTF_TYPE_VEC4, Target);
            model.accessors[static_cast<std::size_t>(index)].normalized = true;
            primitive.attributes["COLOR_0"] = index;
        }
        primitive.indices = AddIndices(source.indices, source.positions.size() / 3);
        return primitive;
    }

    void AddMesh(const Mesh& source)
    {
        tinygltf::Mesh mesh;
        mesh.name = source.name;
        for (const Primitive& primitive : source.primitives)
            mesh.primitives.push_back(PrimitiveOf(primitive));
        model.meshes.push_back(std::move(mesh));
    }

    void AddPicture(const Picture& picture)
    {
        tinygltf::Image image;
        image.name = picture.name;
        image.mimeType = picture.isJpeg ? "image/jpeg" : "image/png";
        image.bufferView = AddBytes(picture.file, 0);
        model.images.push_back(std::move(image));
    }

    /// Textures are pairs of a picture and a way to repeat it; each pair is stored once.
    int TextureOf(const Material& material)
    {
        const auto [texture, isNew] =
            textures.try_emplace({material.picture, material.wrap[0], material.wrap[1]}, model.textures.size());
        if (isNew) {
            tinygltf::Sampler sampler;
            sampler.wrapS = WrapNumber(material.wrap[0]);
            sampler.wrapT = WrapNumber(material.wrap[1]);
            tinygltf::Texture made;
            made.source = static_cast<int>(material.picture);
            made.sampler = static_cast<int>(model.samplers.size());
            model.samplers.push_back(std::move(sampler));
            model.textures.push_back(std::move(made));
        }
        return static_cast<int>(texture->second);
    }

    void AddMaterial(const Material& material)
    {
        const bool hasPicture = material.picture != None;
        model.materials.push_back(GltfMaterialOf(material, hasPicture ? &scene.pictures[material.picture] : nullptr,
                                                 hasPicture ? TextureOf(material) : -1));
        for (const auto& [extension, value] : model.materials.back().extensions) {
            if (std::ranges::find(model.extensionsUsed, extension) == model.extensionsUsed.end())
                model.extensionsUsed.push_back(extension);
        }
    }

    void AddNodes()
    {
        tinygltf::Scene shown;
        for (std::size_t number = 0; number < scene.nodes.size(); ++number) {
            const Node& source = scene.nodes[number];
            tinygltf::Node node;
            node.name = source.name;
            node.mesh = source.mesh == None ? -1 : static_cast<int>(source.mesh);
            if (source.transform != prc::identityMatrix) {
                for (std::size_t column = 0; column < 4; ++column) {
                    for (std::size_t row = 0; row < 4; ++row)
                        node.matrix.push_back(source.transform[4 * row + column]);
                }
            }
            // The library writes "null" for a node of which there is nothing to say.
            if (node.name.empty() && node.mesh < 0 && node.matrix.empty())
                node.translation = {0.0, 0.0, 0.0};
            model.nodes.push_back(std::move(node));
            std::vector<int>& siblings = source.parent == None ? shown.nodes : model.nodes[source.parent].children;
            siblings.push_back(static_cast<int>(number));
        }
        model.scenes.push_back(std::move(shown));
        model.defaultScene = 0;
    }

    const MeshScene& scene;
    tinygltf::Model model;
    tinygltf::Buffer buffer; ///< becomes the model's only one
    std::map<std::tuple<std::uint32_t, Wrap, Wrap>, std::size_t> textures;
};

} // namespace

void WriteGltf(const MeshScene& scene, GltfForm form, const std::filesystem::path& file)
{
    if (scene.nodes.empty())
        throw ConvertError("it holds nothing that could be read");
    const tinygltf::Model model = GltfWriter(scene).Run();
    std::ofstream stream(file, std::ios::binary);
    tinygltf::TinyGLTF writer;
    const bool written =
        writer.WriteGltfSceneToStream(&model, stream, form == GltfForm::Text, form == GltfForm::Binary);
    stream.close();
    if (!written || !stream)
        throw ConvertError("the glTF file could not be written");
}

} // namespace Orvel::Convert
