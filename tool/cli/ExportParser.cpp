#include "tool/cli/CommandParsers.h"
#include "tool/cli/Errors.h"
#include "tool/cli/OptionParsing.h"
#include "tool/cli/PdfParser.h"
#include "tool/cli/ValueHints.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Orvel::Cli
{

namespace
{

constexpr const char* ExportExamples = R"(Examples:
  orvelprc export chair.glb -o chair.prc
  orvelprc export house.fbx -o house.prc --texture-dir textures --max-texture 1024
  orvelprc export part.stl -o part.prc --scale 25.4 --up keep
  orvelprc export chair.glb -o chair.pdf --title 'A chair' --buttons
  orvelprc export chair.prc -o sheet-with-chair.pdf --template sheet.pdf --field Picture
  orvelprc export chair.glb -o - | wc -c
  orvelprc export --list robot.glb
  orvelprc export robot.glb -o robot.prc --record robot.json --clip Walk --fps 30

Lengths become millimetres and z points up where the scene tells its unit and axes; one group at the top of the
tree does it, and '--scale 1 --up keep' leaves it out. OUT takes the place of an existing file only when all is done.)";

enum class Format
{
    Prc,
    Pdf
};

struct Parsed
{
    ExportOptions options;
    PdfOptions pdf;
    std::optional<Format> format;
    bool list = false;
};

/// Names with the extension of a format that is not written would deceive everybody who sees the file. Unknown ones, as
/// in "part.a12", mean nothing.
Format FormatOf(const Parsed& parsed)
{
    if (parsed.format)
        return *parsed.format;
    const std::filesystem::path output = parsed.options.output;
    const std::string extension = CLI::detail::to_lower(output.extension().string());
    for (const std::string_view foreign : {".glb", ".gltf", ".obj", ".fbx", ".stl", ".ply", ".u3d"})
        if (extension == foreign)
            throw UsageError("cannot write '" + extension + "' files ('--format prc' writes PRC under this name)");
    return extension == ".pdf" ? Format::Pdf : Format::Prc;
}

void AddAnimationOptions(CLI::App& command, ExportOptions& options)
{
    Animate::AnimationOptions& animation = options.animation;
    command
        .add_option("--script", options.script,
                    "Add what FILE says: variants, motion, a camera (see the scene script guide)")
        ->type_name("FILE");
    command
        .add_option("--turntable", options.turntableFrames, "Add a camera that goes once round the scene in N frames")
        ->type_name("N")
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

/// What a script adds shows in the record and in a PDF alone.
void CheckThatMotionShows(const CLI::App& command, const ExportOptions& options)
{
    if (!options.record.empty() || options.pdf)
        return;
    for (const char* const name : {"--script", "--turntable"}) {
        if (command.get_option(name)->count() > 0)
            throw UsageError(std::string(name) + " needs --record, or a PDF as output");
    }
}

/// The options that only a scene can follow, as far as they are given.
std::vector<std::string> GivenForScenes(const CLI::App& command)
{
    std::vector<std::string> given;
    for (const char* const name :
         {"--scale", "--crease-angle", "--texture-dir", "--max-texture", "--record", "--script", "--turntable", "--fps",
          "--clip", "--camera", "--max-frames", "--save-animation", "--load-animation"})
    {
        if (command.get_option(name)->count() > 0)
            given.emplace_back(name);
    }
    return given;
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

/// Completes what was parsed, and refuses what does not fit together.
void Finish(const CLI::App& command, Parsed& parsed)
{
    ExportOptions& options = parsed.options;
    if (command.get_option("--output")->count() == 0)
        throw CLI::RequiredError("--output");
    if (options.output.empty())
        throw UsageError("the name of the output is empty");
    if (FormatOf(parsed) == Format::Pdf) {
        FinishPdfOptions(parsed.pdf);
        options.pdf = std::move(parsed.pdf);
        options.pdf->model.file = options.scene;
    } else {
        RefusePdfOptions(command);
    }
    CheckThatMotionShows(command, options);
    CheckThatFilesDiffer(options);
    options.forScenes = GivenForScenes(command);
}

} // namespace

void AddExportCommand(CLI::App& program, Command& chosen)
{
    const auto parsed = std::make_shared<Parsed>();
    ExportOptions& options = parsed->options;
    CLI::App& command =
        *program.add_subcommand("export", "Turn a scene into a PRC file, or a PDF with one")->group("Commands");
    command.footer(ExportExamples);
    command
        .add_option(
            "SCENE", options.scene,
            "The scene to read ('orvelprc formats' lists what can be); for a PDF also a PRC file, or a PDF with one")
        ->type_name("")
        ->required();
    command.add_option("-o,--output", options.output, "The file to write; - writes to standard output")
        ->type_name("OUT");
    AddChoice<Format>(command, "--format", parsed->format, {{"prc", Format::Prc}, {"pdf", Format::Pdf}},
                      "Format of OUT: prc or pdf (default: pdf where its name ends in .pdf, else prc)")
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
    command.add_flag("--timings", options.timings, "Tell in the summary how long each stage took");
    command.add_flag("-q,--quiet", options.quiet, "Print no summary, no warnings and no progress");
    command.add_flag("--strict", options.strict, "Fail where there would be a warning");
    AddExistingFileOption(command, options.existing);
    AddLimitOptions(command, options.limits);
    AddPdfOptions(command, parsed->pdf);
    OfferFiles(*command.get_option("SCENE"), {"prc", "pdf"});
    command.callback([parsed, &command, &chosen] {
        if (parsed->list) {
            chosen = ListOptions{parsed->options.scene, parsed->options.limits, parsed->options.json};
            return;
        }
        Finish(command, *parsed);
        chosen = std::move(parsed->options);
    });
}

} // namespace Orvel::Cli
