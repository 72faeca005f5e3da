#include "tool/cli/FormatsCommand.h"

#include "tool/cli/Console.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace Orvel::Cli
{

namespace
{

using Import::SceneFormat;

std::vector<SceneFormat> WritableFormats()
{
    return {{"PRC (ISO 14739-1)", {"prc"}}, {"PDF with PRC inside", {"pdf"}}};
}

std::vector<SceneFormat> ConvertibleFormats()
{
    return {{"glTF 2.0", {"glb", "gltf"}},
            {"Wavefront OBJ", {"obj"}},
            {"STL", {"stl"}},
            {"PLY", {"ply"}},
            {"PRC as it stands in a PDF", {"prc"}}};
}

nlohmann::ordered_json JsonOf(const std::vector<SceneFormat>& formats)
{
    auto list = nlohmann::ordered_json::array();
    for (const SceneFormat& format : formats)
        list.push_back({{"name", format.description}, {"extensions", format.extensions}});
    return list;
}

std::string TextOf(const std::string& title, const std::vector<SceneFormat>& formats)
{
    std::string text = title + "\n";
    for (const SceneFormat& format : formats) {
        text += "  " + format.description + ":";
        for (const std::string& extension : format.extensions)
            text += " ." + extension;
        text += "\n";
    }
    return text;
}

} // namespace

std::vector<SceneFormat> ReadableFormats()
{
    std::vector<SceneFormat> formats{{"glTF 2.0", {"glb", "gltf"}}};
    const std::vector<SceneFormat> others = Import::ListAssimpFormats();
    formats.insert(formats.end(), others.begin(), others.end());
    return formats;
}

void RunFormats(const FormatsOptions& options)
{
    if (options.json) {
        nlohmann::ordered_json formats;
        formats["read"] = JsonOf(ReadableFormats());
        formats["write"] = JsonOf(WritableFormats());
        formats["convert"] = JsonOf(ConvertibleFormats());
        PrintResult(formats.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n");
    } else {
        PrintResult(TextOf("Scenes that can be read:", ReadableFormats()) +
                    TextOf("Files that 'orvelprc export' writes:", WritableFormats()) +
                    TextOf("Files that 'orvelprc convert' makes of PRC and PDF files:", ConvertibleFormats()));
    }
}

} // namespace Orvel::Cli
