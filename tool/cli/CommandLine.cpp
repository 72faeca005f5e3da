#include "tool/cli/CommandLine.h"

#include "tool/cli/Errors.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <cmath>
#include <filesystem>
#include <map>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace Orvel::Cli
{

namespace
{

constexpr const char* ProgramExamples = R"(Examples:
  orvelprc export chair.glb -o chair.prc
  orvelprc inspect chair.prc
  orvelprc formats

'orvelprc COMMAND --help' tells about one command.
Exit codes: 0 done, 1 failed, 2 wrong usage.)";

constexpr const char* ExportExamples = R"(Examples:
  orvelprc export chair.glb -o chair.prc
  orvelprc export house.fbx -o house.prc --texture-dir textures --max-texture 1024
  orvelprc export part.stl -o part.prc --scale 25.4 --up keep
  orvelprc export chair.glb -o - | wc -c

Lengths become millimetres and z points up where the scene tells its unit and axes; one group at the top of the
tree does it, and '--scale 1 --up keep' leaves it out. OUT takes the place of an existing file only when all is done.)";

constexpr const char* InspectExamples = R"(Examples:
  orvelprc inspect chair.prc
  orvelprc inspect chair.prc --tree
  orvelprc inspect chair.prc --json | jq .trianglesStored

A damaged file is told as far as it can be read; warnings say what is missing.)";

constexpr const char* FormatsExamples = R"(Examples:
  orvelprc formats
  orvelprc formats --json)";

/// The parsed values of every command; the command that was given picks its own.
struct Parsed
{
    ExportOptions exporting;
    bool formatIsGiven = false;
    InspectOptions inspecting;
    FormatsOptions formats;
};

CLI::Validator Number(std::string description, bool (*accepts)(double))
{
    return {[description, accepts](std::string& text) {
                double number = 0.0;
                const bool good = CLI::detail::lexical_cast(text, number) && std::isfinite(number) && accepts(number);
                return good ? std::string() : "'" + text + "' is not " + description;
            },
            ""};
}

template <typename Value>
using Choices = std::vector<std::pair<std::string, Value>>;

/// An option whose value is one of some words, in any case.
template <typename Value>
CLI::Option* AddChoice(CLI::App& command, const std::string& name, Value& value, const Choices<Value>& choices,
                       const std::string& description)
{
    const auto choose = [name, choices, &value](const std::string& text) {
        std::string known;
        for (const auto& [word, meaning] : choices) {
            if (CLI::detail::to_lower(text) == word) {
                value = meaning;
                return;
            }
            known += (known.empty() ? "" : ", ") + word;
        }
        throw CLI::ValidationError(name, "'" + text + "' is none of: " + known);
    };
    return command.add_option_function<std::string>(name, choose, description);
}

CLI::Validator Folder()
{
    return {[](std::string& text) {
                std::error_code missing;
                return std::filesystem::is_directory(text, missing) ? "" : "there is no folder '" + text + "'";
            },
            ""};
}

/// @param text a number and perhaps K, M, G or T, which are powers of 1024, as in "500M", "1.5GiB".
std::uint64_t SizeInBytes(const std::string& text)
{
    static const std::map<std::string, int> exponents{{"", 0},     {"b", 0},   {"k", 10},   {"kb", 10}, {"kib", 10},
                                                      {"m", 20},   {"mb", 20}, {"mib", 20}, {"g", 30},  {"gb", 30},
                                                      {"gib", 30}, {"t", 40},  {"tb", 40},  {"tib", 40}};
    double number = 0.0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
    const auto unit =
        exponents.find(CLI::detail::to_lower(CLI::detail::trim_copy({parsed.ptr, text.data() + text.size()})));
    const double size = unit == exponents.end() ? -1.0 : std::ldexp(number, unit->second);
    if (parsed.ec != std::errc() || !(size >= 0.0 && size < 0x1p63))
        throw CLI::ValidationError("--memory-limit", "'" + text + "' is not a size like 500M or 8G");
    return static_cast<std::uint64_t>(size);
}

void AddLimitOptions(CLI::App& command, LimitOptions& limits)
{
    command
        .add_option_function<double>(
            "--time-limit",
            [&limits](double seconds) {
                limits.time = std::chrono::milliseconds(std::llround(std::ceil(seconds * 1000.0)));
            },
            "Give up after SECONDS; 0: never (default: 60, and more for large scenes)")
        ->type_name("SECONDS")
        ->check(Number("a number of seconds", [](double seconds) { return seconds >= 0.0 && seconds <= 1e9; }));
    command
        .add_option_function<std::string>(
            "--memory-limit", [&limits](const std::string& text) { limits.memoryInBytes = SizeInBytes(text); },
            "Give up beyond SIZE of memory, like 500M or 8G; 0: never (default: 4G, and more for large scenes)")
        ->type_name("SIZE");
}

void AddImportOptions(CLI::App& command, Import::LoadOptions& load)
{
    command.add_option("--scale", load.scale, "Multiply lengths by S (default: to millimetres, from the scene's unit)")
        ->type_name("S")
        ->check(Number("a number above 0", [](double scale) { return scale > 0.0; }));
    AddChoice<Import::Up>(
        command, "--up", load.up, {{"y", Import::Up::Y}, {"z", Import::Up::Z}, {"keep", Import::Up::Keep}},
        "Which axis points up in OUT: y, z, or keep as it is (default: z where the scene tells its axes, "
        "else keep; y and z take a scene that does not tell as y up)")
        ->type_name("AXIS");
    command
        .add_option("--crease-angle", load.creaseAngleInDegrees,
                    "Where a shape has no normals: edges sharper than DEGREES stay visible (default: 35)")
        ->type_name("DEGREES")
        ->check(Number("an angle from 0 to 180", [](double angle) { return angle >= 0.0 && angle <= 180.0; }));
    command
        .add_option("--texture-dir", load.textureFolders, "Look for textures in FOLDER too; may be given repeatedly")
        ->type_name("FOLDER")
        ->allow_extra_args(false)
        ->check(Folder());
}

CLI::App& AddExport(CLI::App& program, Parsed& parsed)
{
    ExportOptions& options = parsed.exporting;
    CLI::App& command = *program.add_subcommand("export", "Turn a scene into a PRC file")->group("Commands");
    command.footer(ExportExamples);
    command.add_option("SCENE", options.scene, "The scene to read ('orvelprc formats' lists what can be)")
        ->type_name("")
        ->required();
    command.add_option("-o,--output", options.output, "The file to write; - writes to standard output")
        ->type_name("OUT")
        ->required();
    AddChoice<bool>(command, "--format", parsed.formatIsGiven, {{"prc", true}}, "Format of OUT, whatever its name: prc")
        ->type_name("FORMAT");
    AddImportOptions(command, options.load);
    command
        .add_option("--max-texture", options.maximumTextureSize,
                    "Make textures smaller until no side exceeds N pixels (default: 1024)")
        ->type_name("N")
        ->check(Number("a number of pixels, 1 or more", [](double pixels) { return pixels >= 1.0; }));
    command.add_flag("--json", options.json, "Print the summary as JSON");
    command.add_flag("-q,--quiet", options.quiet, "Print no summary, no warnings and no progress");
    command.add_flag("--strict", options.strict, "Fail where there would be a warning");
    command.add_flag_callback(
        "--no-clobber", [&options] { options.existing = ExistingFile::Keep; }, "Fail when OUT exists already");
    AddLimitOptions(command, options.limits);
    return command;
}

CLI::App& AddInspect(CLI::App& program, Parsed& parsed)
{
    InspectOptions& options = parsed.inspecting;
    CLI::App& command = *program.add_subcommand("inspect", "Tell what is inside a PRC file")->group("Commands");
    command.footer(InspectExamples);
    command.add_option("FILE", options.file, "The file to read")->type_name("")->required();
    command.add_flag("--json", options.json, "Print the report as JSON");
    command.add_flag("--tree", options.tree, "Tell of the tree and its meshes only");
    command.add_flag("--materials", options.materials, "Tell of materials and textures only");
    command.add_flag("--sections", options.sections, "Tell of the file's sections only");
    AddLimitOptions(command, options.limits);
    return command;
}

CLI::App& AddFormats(CLI::App& program, Parsed& parsed)
{
    CLI::App& command = *program.add_subcommand("formats", "List what can be read and written")->group("Commands");
    command.footer(FormatsExamples);
    command.add_flag("--json", parsed.formats.json, "Print the list as JSON");
    return command;
}

/// Names with the extension of another format would deceive everybody who sees the file. Unknown ones, as in
/// "part.a12", mean nothing.
void CheckExportFormat(const Parsed& parsed)
{
    const std::filesystem::path output = parsed.exporting.output;
    const std::string extension = CLI::detail::to_lower(output.extension().string());
    for (const std::string_view foreign : {".pdf", ".glb", ".gltf", ".obj", ".fbx", ".stl", ".ply", ".u3d"})
        if (!parsed.formatIsGiven && extension == foreign)
            throw UsageError("cannot write '" + extension + "' files ('--format prc' writes PRC under this name)");
}

ExportOptions CheckedExport(Parsed& parsed)
{
    if (parsed.exporting.output.empty())
        throw UsageError("the name of the output is empty");
    CheckExportFormat(parsed);
    return std::move(parsed.exporting);
}

/// @param error what the option parser found wrong.
UsageError UsageErrorFor(const CLI::App& program, const CLI::ParseError& error)
{
    const std::vector<CLI::App*> commands = program.get_subcommands();
    if (!commands.empty())
        return UsageError(std::string(error.what()) + " (see 'orvelprc " + commands.front()->get_name() + " --help')");
    // The parser misses a command before it looks at the words that it did not understand.
    const std::vector<std::string> unknown = program.remaining();
    return UsageError((unknown.empty() ? "a command is missing" : "there is no command '" + unknown.front() + "'") +
                      " (see 'orvelprc --help')");
}

} // namespace

Command ParseCommandLine(int argumentCount, const char* const* arguments)
{
    Parsed parsed;
    CLI::App program("Turns 3D scenes into PRC (ISO 14739-1), the 3D format inside PDF.", "orvelprc");
    program.footer(ProgramExamples);
    program.set_version_flag("--version", "orvelprc " ORVEL_VERSION, "Print the version and end");
    program.require_subcommand(1);
    program.get_formatter()->column_width(28);
    program.get_formatter()->label("SUBCOMMAND", "COMMAND");
    const CLI::App& exporting = AddExport(program, parsed);
    const CLI::App& inspecting = AddInspect(program, parsed);
    AddFormats(program, parsed);
    try {
        program.parse(argumentCount, arguments);
    } catch (const CLI::CallForVersion& version) {
        return TextRequest{std::string(version.what()) + "\n"};
    } catch (const CLI::CallForHelp&) {
        return TextRequest{program.help()};
    } catch (const CLI::ParseError& error) {
        throw UsageErrorFor(program, error);
    }
    if (exporting.parsed())
        return CheckedExport(parsed);
    if (inspecting.parsed())
        return std::move(parsed.inspecting);
    return parsed.formats;
}

} // namespace Orvel::Cli
