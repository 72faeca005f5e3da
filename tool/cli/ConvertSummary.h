#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace Orvel::Cli
{

/// What a conversion made. The fields are the keys of `orvelprc convert --json`, one object on stdout; their names and
/// meanings stay. Programs that read it pass over keys that they do not know.
struct ConvertSummary
{
    std::string input;        ///< as given on the command line
    std::string output;       ///< as given on the command line
    std::string outputFormat; ///< "glb", "gltf", "obj", "stl", "ply", "prc"
    std::uint64_t nodes = 0;  ///< as this and the counts below stand in the file; 0 for prc
    std::uint64_t meshes = 0;
    std::uint64_t triangles = 0; ///< of the meshes, a shared one counted once
    std::uint64_t materials = 0;
    std::uint64_t textures = 0;
    std::vector<std::string> sideFiles; ///< names of files that were written beside the output and belong to it
    std::uint64_t bytes = 0;            ///< size of the output without them
    double seconds = 0.0;               ///< from start to end
    std::vector<std::string> warnings;
};

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(ConvertSummary, input, output, outputFormat, nodes, meshes, triangles, materials,
                                   textures, sideFiles, bytes, seconds, warnings)

/// The summary as some lines of text for people, without the warnings.
[[nodiscard]] std::string TextOf(const ConvertSummary& summary);

/// The summary as indented JSON with an end of line.
[[nodiscard]] std::string JsonOf(const ConvertSummary& summary);

} // namespace Orvel::Cli
