#pragma once

#include "tests/support/TemporaryFolder.h"
#include "tool/import/GltfReader.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace Orvel::Test
{

using nlohmann::json;

inline constexpr int Byte = 5120;
inline constexpr int UnsignedByte = 5121;
inline constexpr int Short = 5122;
inline constexpr int UnsignedShort = 5123;
inline constexpr int UnsignedInt = 5125;
inline constexpr int Float = 5126;

/// Builds a small glTF scene: the JSON text, and one buffer that stands in "data.bin" beside it.
class GltfFile
{
public:
    json document = {{"asset", {{"version", "2.0"}}},
                     {"scene", 0},
                     {"scenes", {{{"nodes", json::array({0})}}}},
                     {"nodes", json::array()},
                     {"meshes", json::array()},
                     {"accessors", json::array()},
                     {"bufferViews", json::array()}};
    std::string bytes;

    /// @return number of the new entry of a top-level table.
    int Add(const char* table, json entry)
    {
        document[table].push_back(std::move(entry));
        return static_cast<int>(document[table].size()) - 1;
    }

    template <typename T>
    int View(const std::vector<T>& values)
    {
        while (bytes.size() % 4 != 0)
            bytes += '\0';
        const std::size_t offset = bytes.size();
        const std::size_t size = values.size() * sizeof(T);
        bytes.resize(offset + size);
        if (size > 0)
            std::memcpy(bytes.data() + offset, values.data(), size);
        return Add("bufferViews", {{"buffer", 0}, {"byteOffset", offset}, {"byteLength", size}});
    }

    int Accessor(int view, int componentType, const char* type, std::size_t count)
    {
        return Add("accessors",
                   {{"bufferView", view}, {"componentType", componentType}, {"type", type}, {"count", count}});
    }

    int Vectors(const std::vector<float>& values) { return Accessor(View(values), Float, "VEC3", values.size() / 3); }

    int Pairs(const std::vector<float>& values) { return Accessor(View(values), Float, "VEC2", values.size() / 2); }

    int Indices(const std::vector<std::uint16_t>& values)
    {
        return Accessor(View(values), UnsignedShort, "SCALAR", values.size());
    }

    /// A mesh with one primitive and a root node that shows it. @return the primitive, to be refined.
    json& MeshNode(json attributes)
    {
        const int mesh =
            Add("meshes", {{"name", "Wheel"}, {"primitives", json::array({{{"attributes", std::move(attributes)}}})}});
        const int node = Add("nodes", {{"mesh", mesh}});
        document["scenes"][0]["nodes"] = json::array();
        for (int root = 0; root <= node; ++root)
            document["scenes"][0]["nodes"].push_back(root);
        return document["meshes"][static_cast<std::size_t>(mesh)]["primitives"][0];
    }

    /// The text with its buffer in "data.bin".
    std::filesystem::path Write(const TemporaryFolder& folder, std::string_view name = "scene.gltf")
    {
        if (!bytes.empty() && !document.contains("buffers"))
            document["buffers"] = json::array({{{"uri", "data.bin"}, {"byteLength", bytes.size()}}});
        if (!bytes.empty())
            folder.Write("data.bin", bytes);
        return folder.Write(name, document.dump());
    }

    /// The same as one binary file.
    std::string Binary() const
    {
        json whole = document;
        whole["buffers"] = json::array({{{"byteLength", bytes.size()}}});
        std::string text = whole.dump();
        text.resize((text.size() + 3) / 4 * 4, ' ');
        std::string chunk = bytes;
        chunk.resize((chunk.size() + 3) / 4 * 4, '\0');
        return "glTF" + Word(2) + Word(static_cast<std::uint32_t>(12 + 8 + text.size() + 8 + chunk.size())) +
               Word(static_cast<std::uint32_t>(text.size())) + "JSON" + text +
               Word(static_cast<std::uint32_t>(chunk.size())) + std::string("BIN\0", 4) + chunk;
    }

    static std::string Word(std::uint32_t value) { return {reinterpret_cast<const char*>(&value), sizeof value}; }
};

/// A file with one triangle over points of which no two numbers are equal.
inline GltfFile TriangleFile()
{
    GltfFile file;
    file.MeshNode({{"POSITION", file.Vectors({1, 2, 3, 5, 7, 11, -13, 17, 19.5F})}});
    return file;
}

struct ReadResult
{
    Import::ImportedScene scene;
    std::vector<std::string> warnings;
};

inline ReadResult Read(const std::filesystem::path& path)
{
    Import::ImportReport report;
    Import::ImportedScene scene = Import::ReadGltf(path, report);
    return {std::move(scene), report.Warnings()};
}

/// The message with which a file is refused; empty when it is read.
inline std::string Refusal(const std::filesystem::path& path)
{
    try {
        Import::ImportReport report;
        const Import::ImportedScene scene = Import::ReadGltf(path, report);
        return {};
    } catch (const Import::ImportError& error) {
        return error.what();
    }
}

class GltfTest : public ::testing::Test
{
protected:
    TemporaryFolder folder;
};

} // namespace Orvel::Test
