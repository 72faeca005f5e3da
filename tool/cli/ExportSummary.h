#pragma once

#include "tool/cli/CommandListener.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Orvel::Cli
{

/// The group at the top that brings the scene into the units and axes of the file.
struct TopGroupSummary
{
    std::string name;
    double scale = 1.0; ///< lengths are multiplied by this
    std::string fromUp; ///< "x", "y" or "z"; empty when the axes stay
    std::string toUp;   ///< "x", "y" or "z"; empty when the axes stay
};

/// What an export made. The fields are the keys of `orvelprc export --json`, one object on stdout; their names and
/// meanings stay. Programs that read it pass over keys that they do not know.
struct ExportSummary
{
    struct Triangles
    {
        std::uint64_t stored = 0; ///< in the file, a shared shape counted once
        std::uint64_t placed = 0; ///< as seen, a shared shape counted at each place
    };

    struct Texture
    {
        std::string name;
        std::uint32_t width = 0;        ///< pixels, of the source
        std::uint32_t height = 0;       ///< pixels, of the source
        std::uint32_t storedWidth = 0;  ///< pixels, in the file
        std::uint32_t storedHeight = 0; ///< pixels, in the file
    };

    std::string input;        ///< as given on the command line
    std::string output;       ///< as given on the command line
    std::string inputFormat;  ///< for people: "glTF 2.0"
    std::string outputFormat; ///< "prc", "pdf"
    std::uint64_t nodes = 0;  ///< of the scene: groups and objects, without the top group
    std::uint64_t objects = 0;
    std::uint64_t meshes = 0; ///< shapes that are stored
    Triangles triangles;
    std::uint64_t materials = 0;
    std::vector<Texture> textures;
    std::optional<TopGroupSummary> topGroup; ///< null in JSON when there is none
    std::vector<std::string> views;          ///< of a PDF, in the order of its list; empty for a PRC file
    std::uint64_t bytes = 0;                 ///< size of the file
    double seconds = 0.0;                    ///< from start to end
    std::vector<StageTime> timings;          ///< see ExportTimings; no key in JSON unless they were asked for
    std::vector<std::string> warnings;
};

void to_json(nlohmann::json& json, const ExportSummary& summary);
void from_json(const nlohmann::json& json, ExportSummary& summary);

/// The summary as some lines of text for people, without the warnings.
[[nodiscard]] std::string TextOf(const ExportSummary& summary);

/// The summary as indented JSON with an end of line.
[[nodiscard]] std::string JsonOf(const ExportSummary& summary);

} // namespace Orvel::Cli
