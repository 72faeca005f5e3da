#include "tool/cli/ConvertSummary.h"

#include "tool/cli/Text.h"

namespace Orvel::Cli
{

std::string TextOf(const ConvertSummary& summary)
{
    std::string text = Quoted(summary.input) + " -> " + Quoted(summary.output) + " (" + summary.outputFormat + "), " +
                       SizeText(summary.bytes) + " in " + FixedText(summary.seconds, 2) + " s\n";
    if (summary.outputFormat == "prc")
        return text;
    text += LabelledLine("nodes", std::to_string(summary.nodes));
    text += LabelledLine("meshes",
                         std::to_string(summary.meshes) + " with " + Count(summary.triangles, "triangle", "triangles"));
    text += LabelledLine("materials", std::to_string(summary.materials));
    text += LabelledLine("textures", std::to_string(summary.textures));
    for (const std::string& file : summary.sideFiles)
        text += LabelledLine("with", Quoted(file));
    return text;
}

std::string JsonOf(const ConvertSummary& summary)
{
    return nlohmann::json(summary).dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

} // namespace Orvel::Cli
