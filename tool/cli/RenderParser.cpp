#include "tool/cli/CommandParsers.h"
#include "tool/cli/Errors.h"
#include "tool/cli/OptionParsing.h"
#include "tool/render/Renderer.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace Orvel::Cli
{

namespace
{

constexpr const char* RenderExamples = R"(Examples:
  orvelprc render chair.glb -o chair.png
  orvelprc render manual.pdf -o manual.png --shadow
  orvelprc render chair.prc -o front.png --view front --size 800x600
  orvelprc render house.fbx -o house.png --view 'Camera 1' --background transparent
  orvelprc render chair.glb -o - | display

The picture shows what 'orvelprc export' would write, from the same place as a view of that name. Equal input gives
equal bytes.)";

using Background = std::optional<std::array<std::uint8_t, 3>>;

/// Reads a whole number at the start of a text, which loses it.
/// @return false when there is none.
bool TakeNumber(std::string_view& text, int base, std::uint32_t& number)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return error == std::errc();
}

void SetSize(RenderOptions& options, const std::string& text)
{
    std::string_view rest = text;
    bool isSize = TakeNumber(rest, 10, options.width) && (rest.starts_with('x') || rest.starts_with('X'));
    if (isSize)
        rest.remove_prefix(1);
    isSize = isSize && TakeNumber(rest, 10, options.height) && rest.empty();
    const auto fits = [](std::uint32_t side) { return side >= 1 && side <= Render::LargestSide; };
    if (!isSize || !fits(options.width) || !fits(options.height)) {
        throw CLI::ValidationError("--size", "'" + text + "' is not a size like 800x600, with sides of 1 to " +
                                                 std::to_string(Render::LargestSide) + " pixels");
    }
}

/// @param text "transparent", or a colour.
Background BackgroundOf(const std::string& text)
{
    const std::string word = CLI::detail::to_lower(text);
    return word == "transparent" || word == "none" ? std::nullopt : Background(ColourOf("--background", text));
}

/// A name with the extension of another format would deceive everybody who sees the file.
void CheckPictureFormat(const std::string& output)
{
    const std::string extension = CLI::detail::to_lower(std::filesystem::path(output).extension().string());
    for (const std::string_view foreign :
         {".jpg", ".jpeg", ".gif", ".bmp", ".tif", ".tiff", ".webp", ".svg", ".pdf", ".prc", ".glb", ".gltf"})
        if (extension == foreign)
            throw UsageError("cannot write '" + extension + "' files, only PNG");
}

void AddPictureOptions(CLI::App& command, RenderOptions& options)
{
    CLI::Option* const view = command.add_option(
        "--view", options.view,
        "Look from iso, front, back, left, right, top or bottom, or through the scene's camera of that name "
        "(default: iso)");
    view->type_name("NAME");
    OfferWords(*view, {"iso", "front", "back", "left", "right", "top", "bottom"});
    command
        .add_option_function<std::string>(
            "--size", [&options](const std::string& text) { SetSize(options, text); },
            "Width and height in pixels (default: 1600x1200)")
        ->type_name("WxH");
    CLI::Option* const background = command.add_option_function<std::string>(
        "--background", [&options](const std::string& text) { options.background = BackgroundOf(text); },
        "Colour behind the scene, like white or #ff8000, or transparent (default: white)");
    background->type_name("COLOR");
    OfferWords(*background, {"transparent", "white", "black", "grey"});
    command.add_flag("--shadow", options.shadow, "Let the scene cast a soft shadow on the ground below it");
    command
        .add_option("--samples", options.samples,
                    "Rays through each pixel along edges, 1 to 64; more make edges and shadows smoother (default: 8)")
        ->type_name("N")
        ->check(Number("a number from 1 to 64", [](double count) { return count >= 1.0 && count <= 64.0; }));
}

} // namespace

void AddRenderCommand(CLI::App& program, Command& chosen)
{
    const auto options = std::make_shared<RenderOptions>();
    CLI::App& command =
        *program.add_subcommand("render", "Take a picture of a scene, or of a PRC file or a PDF with one")
             ->group("Commands");
    command.footer(RenderExamples);
    AddModelInputOptions(command, options->input);
    command.get_option("FILE")->description("The scene, PRC or PDF file to show");
    command.add_option("-o,--output", options->output, "The PNG file to write; - writes to standard output")
        ->type_name("PICTURE")
        ->required();
    AddPictureOptions(command, *options);
    AddImportOptions(command, options->load);
    command.add_flag("-q,--quiet", options->quiet, "Print no warnings and no progress");
    AddExistingFileOption(command, options->existing);
    AddLimitOptions(command, options->limits);
    command.callback([options, &chosen] {
        if (options->output.empty())
            throw UsageError("the name of the output is empty");
        CheckPictureFormat(options->output);
        chosen = std::move(*options);
    });
}

} // namespace Orvel::Cli
