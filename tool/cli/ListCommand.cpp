#include "tool/cli/ListCommand.h"

#include "tool/cli/CommandListener.h"
#include "tool/cli/Console.h"
#include "tool/cli/Errors.h"
#include "tool/cli/InputFile.h"
#include "tool/cli/Supervisor.h"
#include "tool/cli/Text.h"
#include "tool/import/ImportReport.h"
#include "tool/import/LoadDocument.h"

#include <nlohmann/json.hpp>

#include <set>
#include <utility>
#include <vector>

namespace Orvel::Cli
{

namespace
{

using nlohmann::ordered_json;

/// Every camera of the scene in the order of its tree, and whether a clip moves it or what it hangs on.
ordered_json CamerasOf(const Import::ImportedScene& scene)
{
    std::set<Import::Index> moving;
    for (const Import::ImportedClip& clip : scene.clips)
        for (const Import::ImportedNodeChannel& channel : clip.nodes)
            moving.insert(channel.node);
    ordered_json cameras = ordered_json::array();
    std::vector<std::pair<Import::Index, bool>> waiting; // with whether the parent moves; siblings last first
    for (auto root = scene.roots.rbegin(); root != scene.roots.rend(); ++root)
        waiting.emplace_back(*root, false);
    while (!waiting.empty()) {
        const auto [index, parentMoves] = waiting.back();
        waiting.pop_back();
        const Import::ImportedNode& node = scene.nodes[static_cast<std::size_t>(index)];
        const bool moves = parentMoves || moving.contains(index);
        if (node.camera != Import::None) {
            const std::string& own = scene.cameras[static_cast<std::size_t>(node.camera)].name;
            cameras.push_back({{"name", node.name.empty() ? own : node.name}, {"moves", moves}});
        }
        for (auto child = node.children.rbegin(); child != node.children.rend(); ++child)
            waiting.emplace_back(*child, moves);
    }
    return cameras;
}

ordered_json ContentsOf(const Import::ImportedScene& scene)
{
    ordered_json contents;
    contents["cameras"] = CamerasOf(scene);
    ordered_json& clips = contents["clips"] = ordered_json::array();
    for (const Import::ImportedClip& clip : scene.clips)
        clips.push_back({{"name", clip.name}, {"seconds", clip.seconds}});
    ordered_json& variants = contents["variants"] = ordered_json::array();
    for (const std::string& variant : scene.variants)
        variants.push_back({{"name", variant}});
    ordered_json& materials = contents["materials"] = ordered_json::array();
    for (const Import::ImportedMaterial& material : scene.materials)
        materials.push_back({{"name", material.name}});
    return contents;
}

std::string TextOf(const ordered_json& contents)
{
    std::string text;
    for (const auto& [title, entries] : contents.items()) {
        text += title + (entries.empty() ? ": none\n" : ":\n");
        for (const ordered_json& entry : entries) {
            text += "  " + Quoted(entry.at("name").get<std::string>());
            if (entry.value("moves", false))
                text += ", moves";
            if (entry.contains("seconds"))
                text += ", " + ShortestText(entry.at("seconds").get<double>()) + " s";
            text += "\n";
        }
    }
    return text;
}

/// The work of the supervised process: the text to print.
nlohmann::json ReadAndList(const ListOptions& options, const WorkReporter& reporter)
{
    Import::ImportReport report;
    reporter.Stage("reading the scene");
    const ordered_json contents = ContentsOf(Import::ReadScene(options.scene, report));
    if (options.json)
        return contents.dump(2, ' ', false, ordered_json::error_handler_t::replace) + "\n";
    return TextOf(contents);
}

} // namespace

void RunList(const ListOptions& options)
{
    std::string text;
    {
        const SignalWatch signals;
        const InputFile input = ExamineInput(options.scene);
        CommandListener listener(false);
        const Work work = [&options](const WorkReporter& reporter) { return ReadAndList(options, reporter); };
        try {
            text = RunSupervised(work, LimitsFor(options.limits, input.size), signals, listener).get<std::string>();
        } catch (const Failure& failure) {
            throw Failure("cannot list " + Quoted(options.scene) + ": " + failure.what());
        }
        listener.EndProgress();
    }
    PrintResult(text);
}

} // namespace Orvel::Cli
