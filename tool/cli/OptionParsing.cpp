#include "tool/cli/OptionParsing.h"

#include <charconv>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <map>
#include <system_error>
#include <utility>

namespace Orvel::Cli
{

CLI::Validator Number(std::string description, bool (*accepts)(double))
{
    return {[description = std::move(description), accepts](std::string& text) {
                double number = 0.0;
                const bool good = CLI::detail::lexical_cast(text, number) && std::isfinite(number) && accepts(number);
                return good ? std::string() : "'" + text + "' is not " + description;
            },
            ""};
}

CLI::Validator Folder()
{
    return {[](std::string& text) {
                std::error_code missing;
                return std::filesystem::is_directory(text, missing) ? "" : "there is no folder '" + text + "'";
            },
            ""};
}

std::uint64_t SizeInBytes(const std::string& option, const std::string& text)
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
        throw CLI::ValidationError(option, "'" + text + "' is not a size like 500M or 8G");
    return static_cast<std::uint64_t>(size);
}

std::array<std::uint8_t, 3> ColourOf(const std::string& option, const std::string& text)
{
    static const std::map<std::string, std::array<std::uint8_t, 3>> names{
        {"white", {255, 255, 255}}, {"black", {0, 0, 0}}, {"grey", {128, 128, 128}}, {"gray", {128, 128, 128}}};
    if (const auto named = names.find(CLI::detail::to_lower(text)); named != names.end())
        return named->second;
    const std::string digits = text.starts_with('#') ? text.substr(1) : text;
    const std::size_t count = digits.size();
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + count, number, 16);
    if ((count != 3 && count != 6) || error != std::errc() || end != digits.data() + count)
        throw CLI::ValidationError(option, "'" + text + "' is not a colour like white or #ff8000");
    const auto channel = [&](unsigned place) {
        const std::uint32_t part = count == 3 ? (number >> (4 * place) & 0xFU) * 17 : number >> (8 * place) & 0xFFU;
        return static_cast<std::uint8_t>(part);
    };
    return {channel(2), channel(1), channel(0)};
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
            "--memory-limit",
            [&limits](const std::string& text) { limits.memoryInBytes = SizeInBytes("--memory-limit", text); },
            "Give up beyond SIZE of memory, like 500M or 8G; 0: never (default: 4G, and more for large scenes)")
        ->type_name("SIZE");
}

void AddImportOptions(CLI::App& command, Import::LoadOptions& load)
{
    for (CLI::Option* const option : command.get_options()) {
        if (option->get_positional())
            OfferScenes(*option);
    }
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

void AddModelInputOptions(CLI::App& command, ModelInput& input)
{
    CLI::Option* const file = command.add_option("FILE", input.file, "The PRC or PDF file to read");
    file->type_name("")->required();
    OfferFiles(*file, {"prc", "pdf"});
    AddModelChoiceOptions(command, input);
}

void AddModelChoiceOptions(CLI::App& command, ModelInput& input)
{
    command.add_option("--stream", input.stream, "Of a PDF, take 3D stream N, counted from 1 (default: the first PRC)")
        ->type_name("N")
        ->check(Number("a number of 1 or more", [](double number) { return number >= 1.0; }));
    command.add_option("--password", input.password, "Open an encrypted PDF with PASSWORD")->type_name("PASSWORD");
    command
        .add_option_function<std::string>(
            "--unpack-limit",
            [&input](const std::string& text) { input.unpackLimit = SizeInBytes("--unpack-limit", text); },
            "Refuse what unpacks to more than SIZE (default: 16M and 256 times the size of FILE, at most 1G)")
        ->type_name("SIZE");
}

void AddExistingFileOption(CLI::App& command, ExistingFile& existing)
{
    command.add_flag_callback(
        "--no-clobber", [&existing] { existing = ExistingFile::Keep; }, "Fail when OUT exists already");
}

} // namespace Orvel::Cli
