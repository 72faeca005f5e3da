#include "tool/cli/CommandParsers.h"
#include "tool/cli/Errors.h"
#include "tool/cli/OptionParsing.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace Orvel::Cli
{

namespace
{

constexpr const char* ConvertExamples = R"(Examples:
  orvelprc convert chair.prc -o chair.glb
  orvelprc convert manual.pdf --stream 2 -o part.obj
  orvelprc convert manual.pdf -o model.prc
  orvelprc convert part.prc -o - --format stl | head -c 84

The group for units and axes that 'orvelprc export' adds is undone. glb and gltf keep the tree and shared meshes and
are in metres; obj, stl and ply hold every mesh at its places. obj comes with OUT.mtl and OUT-1.png, ... beside it.)";

const Choices<ConvertFormat>& FormatChoices()
{
    static const Choices<ConvertFormat> choices{{"glb", ConvertFormat::Glb}, {"gltf", ConvertFormat::Gltf},
                                                {"obj", ConvertFormat::Obj}, {"stl", ConvertFormat::Stl},
                                                {"ply", ConvertFormat::Ply}, {"prc", ConvertFormat::Prc}};
    return choices;
}

struct Parsed
{
    ConvertOptions options;
    std::optional<ConvertFormat> format;
};

ConvertFormat FormatOf(const Parsed& parsed)
{
    if (parsed.format)
        return *parsed.format;
    const std::string extension =
        CLI::detail::to_lower(std::filesystem::path(parsed.options.output).extension().string());
    for (const auto& [word, format] : FormatChoices()) {
        if (extension == "." + word)
            return format;
    }
    throw UsageError("the name of the output does not tell the format: --format does (glb, gltf, obj, stl, ply, prc)");
}

} // namespace

void AddConvertCommand(CLI::App& program, Command& chosen)
{
    const auto parsed = std::make_shared<Parsed>();
    ConvertOptions& options = parsed->options;
    CLI::App& command =
        *program.add_subcommand("convert", "Turn a PRC file, or a PDF with one, into other formats")->group("Commands");
    command.footer(ConvertExamples);
    AddModelInputOptions(command, options.input);
    command.add_option("-o,--output", options.output, "The file to write; - writes to standard output")
        ->type_name("OUT")
        ->required();
    AddChoice<ConvertFormat>(command, "--format", parsed->format, FormatChoices(),
                             "Format of OUT: glb, gltf, obj, stl, ply, or prc as it stands (default: from its name)")
        ->type_name("FORMAT");
    command.add_option("--scale", options.scale, "Multiply lengths by S (default: to metres for glb and gltf, else 1)")
        ->type_name("S")
        ->check(Number("a number above 0", [](double scale) { return scale > 0.0; }));
    command.add_flag("--json", options.json, "Print the summary as JSON");
    command.add_flag("-q,--quiet", options.quiet, "Print no summary, no warnings and no progress");
    command.add_flag("--strict", options.strict, "Fail where there would be a warning");
    AddExistingFileOption(command, options.existing);
    AddLimitOptions(command, options.limits);
    command.callback([parsed, &chosen] {
        if (parsed->options.output.empty())
            throw UsageError("the name of the output is empty");
        parsed->options.format = FormatOf(*parsed);
        chosen = std::move(parsed->options);
    });
}

} // namespace Orvel::Cli
