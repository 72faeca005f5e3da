#include "tool/import/GltfMembers.h"

#include "tool/import/ImportReport.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace Orvel::Import
{

namespace
{

using nlohmann::json;

enum class Kind
{
    Table, ///< array of objects
    Object,
    Text,
    Flag,
    Number,
    Numbers,   ///< array of `length` numbers
    Size,      ///< whole number up to 2^53
    Int,       ///< whole number up to 2^31 - 1
    Index,     ///< into the top-level table `table`
    IndexList, ///< array of them
    IndexMap   ///< object whose members are such indices
};

enum class Presence
{
    Optional,
    Required
};

// The order is that in which the table reads well.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding)
struct Rule
{
    std::string_view where; ///< members to descend through from the top, an array standing for each of its elements
    const char* member;
    Kind kind;
    const char* table = nullptr;
    std::size_t length = 0;
    Presence presence = Presence::Optional;
};

constexpr Rule Rules[] = {
    {"", "accessors", Kind::Table},
    {"", "animations", Kind::Table},
    {"", "bufferViews", Kind::Table},
    {"", "buffers", Kind::Table},
    {"", "cameras", Kind::Table},
    {"", "images", Kind::Table},
    {"", "materials", Kind::Table},
    {"", "meshes", Kind::Table},
    {"", "nodes", Kind::Table},
    {"", "scenes", Kind::Table},
    {"", "textures", Kind::Table},
    {"", "scene", Kind::Index, "scenes"},
    {"extensions/KHR_materials_variants", "variants", Kind::Table, nullptr, 0, Presence::Required},
    {"scenes", "nodes", Kind::IndexList, "nodes"},
    {"nodes", "children", Kind::IndexList, "nodes"},
    {"nodes", "mesh", Kind::Index, "meshes"},
    {"nodes", "camera", Kind::Index, "cameras"},
    {"nodes", "skin", Kind::Int},
    {"nodes", "matrix", Kind::Numbers, nullptr, 16},
    {"nodes", "translation", Kind::Numbers, nullptr, 3},
    {"nodes", "rotation", Kind::Numbers, nullptr, 4},
    {"nodes", "scale", Kind::Numbers, nullptr, 3},
    {"nodes/extensions", "EXT_mesh_gpu_instancing", Kind::Object},
    {"nodes/extensions/EXT_mesh_gpu_instancing", "attributes", Kind::IndexMap, "accessors"},
    {"meshes", "primitives", Kind::Table, nullptr, 0, Presence::Required},
    {"meshes/primitives", "attributes", Kind::IndexMap, "accessors", 0, Presence::Required},
    {"meshes/primitives", "indices", Kind::Index, "accessors"},
    {"meshes/primitives", "material", Kind::Index, "materials"},
    {"meshes/primitives", "mode", Kind::Int},
    {"meshes/primitives/extensions/KHR_materials_variants", "mappings", Kind::Table, nullptr, 0, Presence::Required},
    {"meshes/primitives/extensions/KHR_materials_variants/mappings", "material", Kind::Index, "materials", 0,
     Presence::Required},
    {"accessors", "bufferView", Kind::Index, "bufferViews"},
    {"accessors", "byteOffset", Kind::Size},
    {"accessors", "componentType", Kind::Int, nullptr, 0, Presence::Required},
    {"accessors", "count", Kind::Size, nullptr, 0, Presence::Required},
    {"accessors", "normalized", Kind::Flag},
    {"accessors", "type", Kind::Text, nullptr, 0, Presence::Required},
    {"accessors", "sparse", Kind::Object},
    {"accessors/sparse", "count", Kind::Int, nullptr, 0, Presence::Required},
    {"accessors/sparse", "indices", Kind::Object, nullptr, 0, Presence::Required},
    {"accessors/sparse", "values", Kind::Object, nullptr, 0, Presence::Required},
    {"accessors/sparse/indices", "bufferView", Kind::Index, "bufferViews", 0, Presence::Required},
    {"accessors/sparse/indices", "byteOffset", Kind::Int},
    {"accessors/sparse/indices", "componentType", Kind::Int, nullptr, 0, Presence::Required},
    {"accessors/sparse/values", "bufferView", Kind::Index, "bufferViews", 0, Presence::Required},
    {"accessors/sparse/values", "byteOffset", Kind::Int},
    {"bufferViews", "buffer", Kind::Index, "buffers", 0, Presence::Required},
    {"bufferViews", "byteOffset", Kind::Size},
    {"bufferViews", "byteLength", Kind::Size, nullptr, 0, Presence::Required},
    {"bufferViews", "byteStride", Kind::Size},
    {"buffers", "byteLength", Kind::Size, nullptr, 0, Presence::Required},
    {"buffers", "uri", Kind::Text},
    {"images", "bufferView", Kind::Index, "bufferViews"},
    {"images", "uri", Kind::Text},
    {"images", "mimeType", Kind::Text},
    {"textures", "source", Kind::Index, "images"},
    {"textures/extensions/KHR_texture_basisu", "source", Kind::Index, "images"},
    {"textures/extensions/EXT_texture_webp", "source", Kind::Index, "images"},
    {"textures/extensions/MSFT_texture_dds", "source", Kind::Index, "images"},
    {"materials", "alphaMode", Kind::Text},
    {"materials", "alphaCutoff", Kind::Number},
    {"materials", "emissiveFactor", Kind::Numbers, nullptr, 3},
    {"materials", "pbrMetallicRoughness", Kind::Object},
    {"materials/pbrMetallicRoughness", "baseColorFactor", Kind::Numbers, nullptr, 4},
    {"materials/pbrMetallicRoughness", "metallicFactor", Kind::Number},
    {"materials/pbrMetallicRoughness", "roughnessFactor", Kind::Number},
    {"materials/pbrMetallicRoughness", "baseColorTexture", Kind::Object},
    {"materials/pbrMetallicRoughness/baseColorTexture", "index", Kind::Index, "textures", 0, Presence::Required},
    {"materials/pbrMetallicRoughness/baseColorTexture", "texCoord", Kind::Int},
    {"materials/pbrMetallicRoughness/metallicRoughnessTexture", "index", Kind::Index, "textures"},
    {"materials/normalTexture", "index", Kind::Index, "textures"},
    {"materials/occlusionTexture", "index", Kind::Index, "textures"},
    {"materials/emissiveTexture", "index", Kind::Index, "textures"},
    {"materials/extensions/KHR_materials_pbrSpecularGlossiness", "diffuseFactor", Kind::Numbers, nullptr, 4},
    {"materials/extensions/KHR_materials_pbrSpecularGlossiness", "specularFactor", Kind::Numbers, nullptr, 3},
    {"materials/extensions/KHR_materials_pbrSpecularGlossiness", "diffuseTexture", Kind::Object},
    {"materials/extensions/KHR_materials_pbrSpecularGlossiness/diffuseTexture", "index", Kind::Index, "textures", 0,
     Presence::Required},
    {"materials/extensions/KHR_materials_pbrSpecularGlossiness/diffuseTexture", "texCoord", Kind::Int},
    {"materials/extensions/KHR_materials_specular", "specularColorFactor", Kind::Numbers, nullptr, 3},
    {"animations", "samplers", Kind::Table, nullptr, 0, Presence::Required},
    {"animations", "channels", Kind::Table, nullptr, 0, Presence::Required},
    {"animations/samplers", "input", Kind::Index, "accessors", 0, Presence::Required},
    {"animations/samplers", "output", Kind::Index, "accessors", 0, Presence::Required},
    {"animations/samplers", "interpolation", Kind::Text},
    {"animations/channels", "sampler", Kind::Int, nullptr, 0, Presence::Required},
    {"animations/channels", "target", Kind::Object, nullptr, 0, Presence::Required},
    {"animations/channels/target", "node", Kind::Index, "nodes"},
    {"animations/channels/target", "path", Kind::Text, nullptr, 0, Presence::Required},
    {"animations/channels/target/extensions/KHR_animation_pointer", "pointer", Kind::Text, nullptr, 0,
     Presence::Required},
    {"cameras", "type", Kind::Text, nullptr, 0, Presence::Required},
};

/// Where the walk stands, as a chain: its text is needed for messages only.
struct Place
{
    const Place* parent = nullptr;
    std::string_view member;
    std::size_t element = std::numeric_limits<std::size_t>::max();

    std::string Text() const
    {
        std::string text = parent == nullptr ? std::string() : parent->Text();
        if (!text.empty() && !member.empty())
            text += '.';
        text += member;
        if (element != std::numeric_limits<std::size_t>::max())
            text += "[" + std::to_string(element) + "]";
        return text;
    }
};

[[noreturn]] void Refuse(const Place& place, const std::string& why)
{
    throw ImportError(place.Text() + " " + why);
}

void CheckWhole(json& value, std::uint64_t highest, const Place& place)
{
    constexpr double ExactLimit = 9007199254740992.0; // 2^53: beyond it not every whole number is a double
    if (value.is_number_float()) {
        const double number = value.get<double>();
        if (number >= 0.0 && number <= ExactLimit && std::floor(number) == number)
            value = static_cast<std::uint64_t>(number);
    }
    if (!value.is_number_unsigned())
        Refuse(place, "is not a whole number of 0 or more");
    if (value.get<std::uint64_t>() > highest)
        Refuse(place, "is too large a number");
}

void CheckIndex(json& value, const char* table, const json& document, const Place& place)
{
    CheckWhole(value, std::numeric_limits<std::int32_t>::max(), place);
    const auto found = document.find(table);
    const std::size_t size = found == document.end() ? 0 : found->size();
    if (value.get<std::uint64_t>() >= size)
        Refuse(place, "is " + value.dump() + ", but the file has " + std::to_string(size) + " " + table);
}

void CheckTable(const json& value, const Place& place)
{
    if (!value.is_array())
        Refuse(place, "is not a list");
    for (std::size_t i = 0; i < value.size(); ++i)
        if (!value[i].is_object())
            Refuse(Place{&place, {}, i}, "is not an object");
}

void CheckNumbers(const json& value, std::size_t length, const Place& place)
{
    bool valid = value.is_array() && value.size() == length;
    for (std::size_t i = 0; valid && i < length; ++i)
        valid = value[i].is_number();
    if (!valid)
        Refuse(place, "is not a list of " + std::to_string(length) + " numbers");
}

void CheckIndices(json& value, const Rule& rule, const json& document, const Place& place)
{
    if (rule.kind == Kind::IndexList ? !value.is_array() : !value.is_object())
        Refuse(place, rule.kind == Kind::IndexList ? "is not a list" : "is not an object");
    for (std::size_t i = 0; value.is_array() && i < value.size(); ++i)
        CheckIndex(value[i], rule.table, document, Place{&place, {}, i});
    if (value.is_object())
        for (auto member = value.begin(); member != value.end(); ++member)
            CheckIndex(*member, rule.table, document, Place{&place, member.key()});
}

void CheckMember(json& value, const Rule& rule, const json& document, const Place& place)
{
    constexpr std::uint64_t HighestSize = std::uint64_t{1} << 53;
    switch (rule.kind) {
    case Kind::Table:
        return CheckTable(value, place);
    case Kind::Object:
        return value.is_object() ? void() : Refuse(place, "is not an object");
    case Kind::Text:
        return value.is_string() ? void() : Refuse(place, "is not text");
    case Kind::Flag:
        return value.is_boolean() ? void() : Refuse(place, "is not true or false");
    case Kind::Number:
        return value.is_number() ? void() : Refuse(place, "is not a number");
    case Kind::Numbers:
        return CheckNumbers(value, rule.length, place);
    case Kind::Size:
        return CheckWhole(value, HighestSize, place);
    case Kind::Int:
        return CheckWhole(value, std::numeric_limits<std::int32_t>::max(), place);
    case Kind::Index:
        return CheckIndex(value, rule.table, document, place);
    case Kind::IndexList:
    case Kind::IndexMap:
        return CheckIndices(value, rule, document, place);
    }
}

void Apply(json& object, std::string_view where, const Rule& rule, const json& document, const Place& place);

void Descend(json& value, std::string_view rest, const Rule& rule, const json& document, Place place)
{
    if (value.is_object())
        return Apply(value, rest, rule, document, place);
    for (std::size_t i = 0; value.is_array() && i < value.size(); ++i) {
        place.element = i;
        if (value[i].is_object())
            Apply(value[i], rest, rule, document, place);
    }
}

void Apply(json& object, std::string_view where, const Rule& rule, const json& document, const Place& place)
{
    if (!where.empty()) {
        const std::size_t slash = where.find('/');
        const std::string_view step = where.substr(0, slash);
        const auto found = object.find(step);
        if (found != object.end())
            Descend(*found, slash == std::string_view::npos ? std::string_view() : where.substr(slash + 1), rule,
                    document, Place{&place, step});
        return;
    }
    const auto found = object.find(rule.member);
    if (found != object.end())
        CheckMember(*found, rule, document, Place{&place, rule.member});
    else if (rule.presence == Presence::Required)
        Refuse(Place{&place, rule.member}, "is missing");
}

} // namespace

void CheckGltfMembers(json& document)
{
    for (const Rule& rule : Rules)
        Apply(document, rule.where, rule, document, Place{});
}

} // namespace Orvel::Import
