#include "tool/cli/CommandParsers.h"
#include "tool/cli/Errors.h"
#include "tool/cli/OptionParsing.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace Orvel::Cli
{

namespace
{

constexpr const char* ExportExamples = R"(Examples:
  orvelprc export chair.glb -o chair.prc
  orvelprc export house.fbx -o house.prc --texture-dir textures --max-texture 1024
  orvelprc export part.stl -o part.prc --scale 25.4 --up keep
  orvelprc export chair.glb -o - | wc -c
  orvelprc export --list robot.glb
  orvelprc export robot.glb -o robot.prc --record robot.json --clip Walk --fps 30

Lengths become millimetres and z points up where the scene tells its unit and axes; one group at the top of the
tree does it, and '--scale 1 --up keep' leaves it out. OUT takes the place of an existing file only when all is done.)";

struct Parsed
{
    ExportOptions options;
    bool formatIsGiven = false;
    bool list = false;
};

/// Names with the extension of another format would deceive everybody who sees the file. Unknown ones, as in
/// "part.a12", mean nothing.
void CheckExportFormat(const Parsed& parsed)
{
    const std::filesystem::path output = parsed.options.output;
    const std::string extension = CLI::detail::to_lower(output.extension().string());
    for (const std::string_view foreign : {".pdf", ".glb", ".gltf", ".obj", ".fbx", ".stl", ".ply", ".u3d"})
        if (!parsed.formatIsGiven && extension == foreign)
            throw UsageError("cannot write '" + extension + "' files ('--format prc' writes PRC under this name)");
}

void AddAnimationOptions(CLI::App& command, ExportOptions& options)
{
    Animate::AnimationOptions& animation = options.animation;
    command
        .add_option("--script", options.script,
                    "Add what FILE says: variants, motion, a camera (see the scene script guide)")
        ->type_name("FILE")
        ->needs("--record");
    command
        .add_option("--turntable", options.turntableFrames, "Add a camera that goes once round the scene in N frames")
        ->type_name("N")
        ->needs("--record")
        ->check(Number("a number of frames, 1 or more", [](double frames) { return frames >= 1.0 && frames < 2e9; }));
    command
        .add_option("--fps", animation.framesPerSecond,
                    "Sample animations of the scene at N frames a second (default: 24)")
        ->type_name("N")
        ->check(Number("a number above 0", [](double frames) { return frames > 0.0 && frames <= 1e6; }));
    command.add_option("--clip", animation.clip, "Which animation becomes the timeline (default: the first)")
        ->type_name("NAME");
    command.add_option("--camera", animation.camera, "Which camera is the active one (default: the first that moves)")
        ->type_name("NAME");
    command
        .add_option("--max-frames", animation.mostFrames, "Refuse animations of more than N frames (default: 100000)")
        ->type_name("N")
        ->check(Number("a number of frames, 1 or more", [](double frames) { return frames >= 1.0 && frames < 2e9; }));
    command.add_option("--save-animation", options.saveAnimation, "Keep the animation of the scene in FILE")
        ->type_name("FILE");
    CLI::Option* const load = command.add_option("--load-animation", options.loadAnimation,
                                                 "Take the animation from FILE, kept before of the same scene");
    load->type_name("FILE");
    for (const char* const sampled : {"--fps", "--clip", "--camera"})
        load->excludes(command.get_option(sampled));
}

/// Results that go to one file would leave only the last.
void CheckThatFilesDiffer(const ExportOptions& options)
{
    if (options.record == options.output)
        throw UsageError("the record and the output are the same file");
    if (options.saveAnimation.empty())
        return;
    if (options.saveAnimation == options.output || options.saveAnimation == options.record)
        throw UsageError("the animation and another result are the same file");
}

} // namespace

void AddExportCommand(CLI::App& program, Command& chosen)
{
    const auto parsed = std::make_shared<Parsed>();
    ExportOptions& options = parsed->options;
    CLI::App& command = *program.add_subcommand("export", "Turn a scene into a PRC file")->group("Commands");
    command.footer(ExportExamples);
    command.add_option("SCENE", options.scene, "The scene to read ('orvelprc formats' lists what can be)")
        ->type_name("")
        ->required();
    const CLI::Option* const output =
        command.add_option("-o,--output", options.output, "The file to write; - writes to standard output")
            ->type_name("OUT");
    AddChoice<bool>(command, "--format", parsed->formatIsGiven, {{"prc", true}},
                    "Format of OUT, whatever its name: prc")
        ->type_name("FORMAT");
    command
        .add_option("--record", options.record,
                    "Write to FILE, as JSON, what drives a viewer: node and material numbers, variants, animation")
        ->type_name("FILE");
    AddAnimationOptions(command, options);
    AddImportOptions(command, options.load);
    command
        .add_option("--max-texture", options.maximumTextureSize,
                    "Make textures smaller until no side exceeds N pixels (default: 1024)")
        ->type_name("N")
        ->check(Number("a number of pixels, 1 or more", [](double pixels) { return pixels >= 1.0; }));
    command.add_flag("--list", parsed->list,
                     "Write nothing, but print the names of the scene's cameras, animations, variants and materials");
    command.add_flag("--json", options.json, "Print the summary, or the list, as JSON");
    command.add_flag("-q,--quiet", options.quiet, "Print no summary, no warnings and no progress");
    command.add_flag("--strict", options.strict, "Fail where there would be a warning");
    AddExistingFileOption(command, options.existing);
    AddLimitOptions(command, options.limits);
    command.callback([parsed, output, &chosen] {
        if (parsed->list) {
            chosen = ListOptions{parsed->options.scene, parsed->options.limits, parsed->options.json};
            return;
        }
        if (output->count() == 0)
            throw CLI::RequiredError("--output");
        if (parsed->options.output.empty())
            throw UsageError("the name of the output is empty");
        CheckExportFormat(*parsed);
        CheckThatFilesDiffer(parsed->options);
        chosen = std::move(parsed->options);
    });
}

} // namespace Orvel::Cli
