// Makes seeds for gltf_reader_fuzz in a folder: what the reader knows, as text that carries its buffer and as binary.

#include "tests/tool/GltfFile.h"

#include <fstream>

namespace
{

using Orvel::Test::GltfFile;
using Orvel::Test::json;
using Values = std::vector<float>;

std::string Base64(const std::string& bytes)
{
    constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t group = 0;
        for (std::size_t k = 0; k < 3; ++k)
            group = group << 8 | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0U);
        for (std::size_t k = 0; k < 4; ++k)
            text += i + k <= bytes.size() ? digits[group >> (18 - 6 * k) & 63] : '=';
    }
    return text;
}

void AddChannel(GltfFile& file, json target, const Values& times, const Values& values, const char* type,
                const char* interpolation)
{
    const std::size_t width = std::string_view(type) == "VEC4" ? 4 : 3;
    const int input = file.Accessor(file.View(times), Orvel::Test::Float, "SCALAR", times.size());
    const int output = file.Accessor(file.View(values), Orvel::Test::Float, type, values.size() / width);
    json& animation = file.document["animations"][0];
    animation["channels"].push_back({{"sampler", animation["samplers"].size()}, {"target", std::move(target)}});
    animation["samplers"].push_back({{"input", input}, {"output", output}, {"interpolation", interpolation}});
}

/// Two nodes that share points; a camera; sparse and whole-number accessors.
GltfFile Shapes()
{
    GltfFile file;
    const int points = file.Vectors({1, 2, 3, 5, 7, 11, -13, 17, 19.5F, 0, 1, 0});
    const int normals = file.Vectors({0, 0, 1, 0, 1, 0, 0.6F, 0, 0.8F, 1, 0, 0});
    const int coordinates =
        file.Accessor(file.View<std::uint16_t>({0, 0, 0, 65535, 9, 7, 3, 1}), Orvel::Test::UnsignedShort, "VEC2", 4);
    file.document["accessors"].back()["normalized"] = true;
    json& strip = file.MeshNode({{"POSITION", points}, {"NORMAL", normals}, {"TEXCOORD_0", coordinates}});
    strip["mode"] = 5;
    json& plain = file.MeshNode({{"POSITION", points}});
    plain["indices"] = file.Indices({2, 0, 1, 3, 2, 1});
    const int values = file.View(Values{7, 7, 7});
    const int places = file.View<std::uint16_t>({1});
    file.document["accessors"][0]["sparse"] = {{"count", 1},
                                               {"indices", {{"bufferView", places}, {"componentType", 5123}}},
                                               {"values", {{"bufferView", values}}}};
    file.document["cameras"] = json::parse(R"([{"type": "perspective", "perspective": {"yfov": 0.5, "znear": 1}},
                                               {"type": "orthographic", "orthographic": {"xmag": 1, "ymag": 2, "zfar": 9, "znear": 1}}])");
    file.document["nodes"][1].update(json::parse(R"({"camera": 0, "scale": [1, 2, 3], "rotation": [0, 0, 0.6, 0.8]})"));
    return file;
}

/// Motion of every kind of a node, and of a material's values.
GltfFile Motion()
{
    GltfFile file = Orvel::Test::TriangleFile();
    file.document["materials"] = {{{"name", "lamp"}, {"alphaMode", "BLEND"}}};
    file.document["meshes"][0]["primitives"][0]["material"] = 0;
    file.document["animations"] = {{{"channels", json::array()}, {"samplers", json::array()}}};
    const auto path = [](const char* name) { return json{{"node", 0}, {"path", name}}; };
    AddChannel(file, path("translation"), {0, 1, 2}, {0, 0, 0, 5, 7, 11, 1, 2, 3}, "VEC3", "LINEAR");
    AddChannel(file, path("scale"), {0.5F, 1}, {1, 1, 1, 2, 3, 5}, "VEC3", "STEP");
    AddChannel(file, path("rotation"), {0, 2}, {0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0},
               "VEC4", "CUBICSPLINE");
    const json pointer = {{"KHR_animation_pointer", {{"pointer", "/materials/0/emissiveFactor"}}}};
    AddChannel(file, {{"path", "pointer"}, {"extensions", pointer}}, {0, 1}, {0, 0, 0, 1, 0.5F, 0.25F}, "VEC3",
               "LINEAR");
    return file;
}

/// Variants, textures with their transforms, materials of two kinds.
GltfFile Looks()
{
    GltfFile file = Orvel::Test::TriangleFile();
    json& document = file.document;
    document["images"] = {{{"uri", "wood.png"}}};
    document["textures"] = {{{"source", 0}}};
    document["materials"] = json::parse(R"([{"doubleSided": true, "alphaMode": "MASK", "pbrMetallicRoughness": {
            "baseColorFactor": [1, 0.5, 0, 0.5], "baseColorTexture": {"index": 0, "texCoord": 1}}},
        {"emissiveFactor": [1, 0, 0], "extensions": {"KHR_materials_unlit": {},
            "KHR_materials_emissive_strength": {"emissiveStrength": 2}}},
        {"extensions": {"KHR_materials_pbrSpecularGlossiness": {"diffuseFactor": [1, 0, 0, 1],
            "diffuseTexture": {"index": 0, "extensions": {"KHR_texture_transform": {"offset": [1, 2]}}}}}}])");
    document["extensions"] = json::parse(R"({"KHR_materials_variants": {"variants": [{"name": "a"}, {"name": "b"}]}})");
    document["extensionsUsed"] = {"KHR_materials_variants", "KHR_texture_transform"};
    document["meshes"][0]["primitives"][0].update(json::parse(R"({"material": 0, "extensions":
        {"KHR_materials_variants": {"mappings": [{"material": 1, "variants": [0]}, {"material": 2, "variants": [1]}]}}})"));
    return file;
}

bool Write(const std::string& path, const std::string& content)
{
    std::ofstream stream(path, std::ios::binary);
    stream << content;
    return static_cast<bool>(stream.flush());
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
        return 2;
    const std::pair<const char*, GltfFile> files[] = {{"shapes", Shapes()}, {"motion", Motion()}, {"looks", Looks()}};
    for (const auto& [name, file] : files) {
        json text = file.document;
        text["buffers"] = {
            {{"uri", "data:application/octet-stream;base64," + Base64(file.bytes)}, {"byteLength", file.bytes.size()}}};
        const std::string path = std::string(argv[1]) + "/" + name;
        if (!Write(path + ".gltf", text.dump()) || !Write(path + ".glb", file.Binary()))
            return 1;
    }
    return 0;
}
