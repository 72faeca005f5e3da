#include "tool/import/GltfDocument.h"

#include "tool/import/GltfMembers.h"
#include "tool/import/ImportReport.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace Orvel::Import
{

namespace
{

using nlohmann::json;

/// Sorted, to be searched.
constexpr std::array<std::string_view, 18> KnownExtensions{
    "EXT_mesh_gpu_instancing",
    "EXT_meshopt_compression",
    "EXT_texture_webp",
    "KHR_animation_pointer",
    "KHR_draco_mesh_compression",
    "KHR_lights_punctual",
    "KHR_materials_emissive_strength",
    "KHR_materials_ior",
    "KHR_materials_pbrSpecularGlossiness",
    "KHR_materials_specular",
    "KHR_materials_transmission",
    "KHR_materials_unlit",
    "KHR_materials_variants",
    "KHR_mesh_quantization",
    "KHR_node_visibility",
    "KHR_texture_basisu",
    "KHR_texture_transform",
    "MSFT_texture_dds",
};
static_assert(std::is_sorted(KnownExtensions.begin(), KnownExtensions.end()));

json ParseJson(std::string_view text)
{
    try {
        return json::parse(text);
    } catch (const json::exception& error) {
        // The library's reason begins with its own code in brackets, and may end with a long piece of the text.
        std::string_view reason = error.what();
        if (const std::size_t end = reason.find("] "); end != std::string_view::npos)
            reason.remove_prefix(end + 2);
        if (const std::size_t end = reason.find("; last read"); end != std::string_view::npos)
            reason = reason.substr(0, end);
        throw ImportError("the JSON text is malformed: " + std::string(reason));
    }
}

void CheckVersion(const json& document)
{
    const json::json_pointer place("/asset/version");
    const json version = document.contains(place) ? document.at(place) : json();
    if (!version.is_string())
        throw ImportError("asset.version is missing: the file is not glTF 2.0");
    if (const auto& text = version.get_ref<const std::string&>(); text != "2" && !text.starts_with("2."))
        throw ImportError("glTF version " + Quoted(text) + " is not supported, only 2.0 is");
}

std::string TakeText(json& object, const char* member)
{
    const auto found = object.find(member);
    return found != object.end() && found->is_string() ? std::move(found->get_ref<std::string&>()) : std::string();
}

std::vector<GltfDocument::Buffer> TakeBuffers(json& document)
{
    std::vector<GltfDocument::Buffer> buffers;
    const json::json_pointer fallback("/extensions/EXT_meshopt_compression/fallback");
    for (json& object : document.value("buffers", json::array())) {
        GltfDocument::Buffer& buffer = buffers.emplace_back();
        buffer.uri = TakeText(object, "uri");
        buffer.byteLength = object.at("byteLength").get<std::uint64_t>();
        buffer.isFallback = object.contains(fallback) && object.at(fallback) == true;
    }
    document.erase("buffers");
    return buffers;
}

std::vector<GltfDocument::Image> TakeImages(json& document)
{
    std::vector<GltfDocument::Image> images;
    for (json& object : document.value("images", json::array())) {
        GltfDocument::Image& image = images.emplace_back();
        image.name = TakeText(object, "name");
        image.uri = TakeText(object, "uri");
        image.mimeType = TakeText(object, "mimeType");
        image.bufferView = object.value("bufferView", -1);
    }
    document.erase("images");
    return images;
}

std::vector<GltfDocument::Animation> TakeAnimations(json& document)
{
    using Animation = GltfDocument::Animation;
    const json::json_pointer pointer("/extensions/KHR_animation_pointer/pointer");
    std::vector<Animation> animations;
    for (json& object : document.value("animations", json::array())) {
        Animation& animation = animations.emplace_back();
        animation.name = TakeText(object, "name");
        for (json& item : object.at("samplers"))
            animation.samplers.push_back(
                {item.at("input").get<int>(), item.at("output").get<int>(), TakeText(item, "interpolation")});
        for (json& item : object.at("channels")) {
            json& target = item.at("target");
            Animation::Channel& channel = animation.channels.emplace_back();
            channel.sampler = item.at("sampler").get<int>();
            channel.node = target.value("node", -1);
            channel.path = TakeText(target, "path");
            if (channel.path == "pointer" && target.contains(pointer))
                channel.pointer = target.at(pointer).get<std::string>();
        }
    }
    document.erase("animations");
    return animations;
}

std::vector<std::string> TakeVariants(json& document)
{
    std::vector<std::string> variants;
    const json::json_pointer place("/extensions/KHR_materials_variants/variants");
    if (document.contains(place))
        for (json& variant : document.at(place))
            variants.push_back(TakeText(variant, "name"));
    return variants;
}

/// Drops what the import never reads: the model spends some hundred bytes on each number in extras and extensions. A
/// call for each level of the text, whose depth is limited.
void DropUnread(json& value)
{
    if (value.is_object()) {
        value.erase("extras");
        if (const auto extensions = value.find("extensions"); extensions != value.end() && extensions->is_object())
            for (auto extension = extensions->begin(); extension != extensions->end();)
                extension = IsKnownExtension(extension.key()) ? std::next(extension) : extensions->erase(extension);
    }
    if (value.is_structured())
        for (json& item : value)
            DropUnread(item);
}

/// The parser refuses a file in which an index accessor has no bytes of its own, as those of compressed primitives.
void DropIndicesWithoutBytes(json& document)
{
    const json::json_pointer compression("/extensions/KHR_draco_mesh_compression");
    const auto meshes = document.find("meshes");
    if (meshes == document.end())
        return;
    for (json& mesh : *meshes)
        for (json& primitive : mesh.at("primitives")) {
            const auto indices = primitive.find("indices");
            if (indices != primitive.end() && primitive.contains(compression) &&
                !document.at("accessors").at(indices->get<std::size_t>()).contains("bufferView"))
                primitive.erase(indices);
        }
}

std::string OneLine(std::string text)
{
    while (!text.empty() && (text.back() == '\n' || text.back() == '.'))
        text.pop_back();
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

void ParseModel(const std::string& text, tinygltf::Model& model)
{
    if (text.size() > std::numeric_limits<unsigned int>::max())
        throw ImportError("the JSON text is larger than 4 GiB");
    tinygltf::TinyGLTF parser;
    std::string error;
    std::string warning;
    if (!parser.LoadASCIIFromString(&model, &error, &warning, text.data(), static_cast<unsigned int>(text.size()), {}))
        throw ImportError("the glTF text is malformed: " + OneLine(error));
}

} // namespace

bool IsKnownExtension(std::string_view name)
{
    return std::binary_search(KnownExtensions.begin(), KnownExtensions.end(), name);
}

GltfDocument ParseGltf(std::string_view text)
{
    json json = ParseJson(text);
    if (!json.is_object())
        throw ImportError("the JSON text is not an object");
    CheckVersion(json);
    CheckGltfMembers(json);

    GltfDocument document;
    document.buffers = TakeBuffers(json);
    document.images = TakeImages(json);
    document.animations = TakeAnimations(json);
    document.variants = TakeVariants(json);
    // Not converted, so a fault in them is none of this import.
    for (const char* table : {"extensions", "samplers", "skins"})
        json.erase(table);
    DropUnread(json);
    DropIndicesWithoutBytes(json);
    ParseModel(json.dump(), document.model);
    return document;
}

} // namespace Orvel::Import
