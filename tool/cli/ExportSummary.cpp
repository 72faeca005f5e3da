#include "tool/cli/ExportSummary.h"

#include "tool/cli/Text.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace Orvel::Cli
{

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(StageTime, stage, seconds)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(ExportSummary::Triangles, stored, placed)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(ExportSummary::Texture, name, width, height, storedWidth, storedHeight)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(TopGroupSummary, name, scale, fromUp, toUp)

namespace
{

constexpr std::size_t MostTexturesInText = 12;
constexpr std::size_t MostViewsInText = 12;

std::string SidesText(std::uint32_t width, std::uint32_t height)
{
    return std::to_string(width) + " x " + std::to_string(height);
}

std::string TextureLines(const std::vector<ExportSummary::Texture>& textures)
{
    std::string text = LabelledLine("textures", std::to_string(textures.size()));
    const std::size_t shown = std::min(textures.size(), MostTexturesInText);
    for (std::size_t i = 0; i < shown; ++i) {
        const ExportSummary::Texture& texture = textures[i];
        const std::string size = SidesText(texture.width, texture.height);
        const std::string storedSize = SidesText(texture.storedWidth, texture.storedHeight);
        text += LabelledLine("", Quoted(texture.name) + ", " + size +
                                     (storedSize == size ? "" : ", stored as " + storedSize));
    }
    if (shown < textures.size())
        text += LabelledLine("", "and " + std::to_string(textures.size() - shown) + " more");
    return text;
}

std::string TopGroupLine(const TopGroupSummary& group)
{
    std::string effect = "lengths times " + ShortestText(group.scale);
    if (group.fromUp != group.toUp)
        effect += ", " + group.fromUp + " up becomes " + group.toUp + " up";
    return LabelledLine("top group", Quoted(group.name) + ": " + effect);
}

std::string ViewLine(const std::vector<std::string>& views)
{
    if (views.empty())
        return {};
    std::string names;
    for (std::size_t i = 0; i < std::min(views.size(), MostViewsInText); ++i)
        names += (i == 0 ? "" : ", ") + Quoted(views[i]);
    return LabelledLine("views", views.size() > MostViewsInText ? names + ", ..." : names);
}

std::string TimingLines(const std::vector<StageTime>& timings)
{
    std::string text;
    for (const StageTime& time : timings)
        text += LabelledLine(text.empty() ? "timings" : "", FixedText(time.seconds, 3) + " s " + time.stage);
    return text;
}

} // namespace

void to_json(nlohmann::json& json, const ExportSummary& summary)
{
    json = {{"input", summary.input},
            {"output", summary.output},
            {"inputFormat", summary.inputFormat},
            {"outputFormat", summary.outputFormat},
            {"nodes", summary.nodes},
            {"objects", summary.objects},
            {"meshes", summary.meshes},
            {"triangles", summary.triangles},
            {"materials", summary.materials},
            {"textures", summary.textures},
            {"topGroup", nullptr},
            {"views", summary.views},
            {"bytes", summary.bytes},
            {"seconds", summary.seconds},
            {"warnings", summary.warnings}};
    if (summary.topGroup)
        json["topGroup"] = *summary.topGroup;
    if (!summary.timings.empty())
        json["timings"] = summary.timings;
}

void from_json(const nlohmann::json& json, ExportSummary& summary)
{
    json.at("input").get_to(summary.input);
    json.at("output").get_to(summary.output);
    json.at("inputFormat").get_to(summary.inputFormat);
    json.at("outputFormat").get_to(summary.outputFormat);
    json.at("nodes").get_to(summary.nodes);
    json.at("objects").get_to(summary.objects);
    json.at("meshes").get_to(summary.meshes);
    json.at("triangles").get_to(summary.triangles);
    json.at("materials").get_to(summary.materials);
    json.at("textures").get_to(summary.textures);
    summary.topGroup.reset();
    if (!json.at("topGroup").is_null())
        summary.topGroup = json["topGroup"].get<TopGroupSummary>();
    json.at("views").get_to(summary.views);
    json.at("bytes").get_to(summary.bytes);
    json.at("seconds").get_to(summary.seconds);
    summary.timings = json.value("timings", std::vector<StageTime>());
    json.at("warnings").get_to(summary.warnings);
}

std::string TextOf(const ExportSummary& summary)
{
    const ExportSummary::Triangles& triangles = summary.triangles;
    std::string text = Quoted(summary.input) + " (" + OneLine(summary.inputFormat) + ") -> " + Quoted(summary.output) +
                       ", " + SizeText(summary.bytes) + " in " + FixedText(summary.seconds, 2) + " s\n";
    text += LabelledLine("nodes", std::to_string(summary.nodes));
    text += LabelledLine("objects", std::to_string(summary.objects) + " of " + Count(summary.meshes, "mesh", "meshes"));
    text += LabelledLine("triangles",
                         std::to_string(triangles.stored) + " stored, " + std::to_string(triangles.placed) + " placed");
    text += LabelledLine("materials", std::to_string(summary.materials));
    text += TextureLines(summary.textures);
    text += ViewLine(summary.views);
    if (summary.topGroup)
        text += TopGroupLine(*summary.topGroup);
    return text + TimingLines(summary.timings);
}

std::string JsonOf(const ExportSummary& summary)
{
    return nlohmann::json(summary).dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

} // namespace Orvel::Cli
