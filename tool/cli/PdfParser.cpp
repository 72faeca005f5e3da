#include "tool/cli/PdfParser.h"

#include "tool/cli/Errors.h"
#include "tool/cli/OptionParsing.h"
#include "tool/cli/Text.h"
#include "tool/cli/ValueHints.h"

#include <CLI/CLI.hpp>
#include <QDateTime>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <span>
#include <string_view>
#include <utility>

namespace Orvel::Cli
{

namespace
{

constexpr double PointsPerMillimetre = 72.0 / 25.4;
constexpr const char* Group = "PDF output";

/// What PDF knows, and a word for it that is easy to type.
using PdfNames = Choices<std::string>;

PdfNames NamesOf(std::initializer_list<const char*> names)
{
    PdfNames choices;
    for (const char* const name : names)
        choices.emplace_back(CLI::detail::to_lower(name), name);
    return choices;
}

const PdfNames& LightingNames()
{
    static const PdfNames names = NamesOf(
        {"Artwork", "None", "White", "Day", "Night", "Hard", "Primary", "Blue", "Red", "Cube", "CAD", "Headlamp"});
    return names;
}

const PdfNames& RenderModeNames()
{
    static const PdfNames names =
        NamesOf({"Solid", "SolidWireframe", "SolidOutline", "Transparent", "TransparentWireframe", "BoundingBox",
                 "TransparentBoundingBox", "TransparentBoundingBoxOutline", "Wireframe", "ShadedWireframe",
                 "HiddenWireframe", "Vertices", "ShadedVertices", "Illustration", "ShadedIllustration"});
    return names;
}

/// Reads numbers with one separator between them, and nothing else.
bool ReadNumbers(std::string_view text, char separator, std::span<double> numbers)
{
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (i > 0) {
            if (!text.starts_with(separator))
                return false;
            text.remove_prefix(1);
        }
        text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), numbers[i]);
        if (error != std::errc() || !std::isfinite(numbers[i]))
            return false;
        text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    }
    return text.empty();
}

void SetPageSize(SheetOptions& sheet, const std::string& text)
{
    const Choices<std::array<double, 2>> known{{"a3", {420.0, 297.0}},      {"a4", {297.0, 210.0}},
                                               {"a5", {210.0, 148.0}},      {"letter", {279.4, 215.9}},
                                               {"tabloid", {431.8, 279.4}}, {"16:9", {338.667, 190.5}}};
    const std::string word = CLI::detail::to_lower(text);
    const auto found = std::ranges::find(known, word, &Choices<std::array<double, 2>>::value_type::first);
    std::array<double, 2> size{};
    // Readers of PDF show pages of up to 200 inches.
    const auto fits = [](double side) { return side >= 20.0 && side <= 5080.0; };
    if (found != known.end()) {
        size = found->second;
    } else if (!ReadNumbers(word, 'x', size) || !fits(size[0]) || !fits(size[1])) {
        throw CLI::ValidationError("--page-size",
                                   "'" + text +
                                       "' is none of a3, a4, a5, letter, tabloid, 16:9, nor a size in mm like 200x150");
    }
    sheet.width = size[0] * PointsPerMillimetre;
    sheet.height = size[1] * PointsPerMillimetre;
}

void SetRectangle(std::optional<Pdf::Rectangle>& rectangle, const std::string& text)
{
    std::array<double, 4> numbers{};
    if (!ReadNumbers(text, ',', numbers) || !(numbers[2] > 0.0) || !(numbers[3] > 0.0))
        throw CLI::ValidationError("--rect", "'" + text + "' is not a place like 72,300,450,300 (x,y,width,height)");
    rectangle = Pdf::Rectangle{numbers[0], numbers[1], numbers[2], numbers[3]};
}

/// @param text as in ISO 8601, with or without time and offset; "now".
/// @return complete, as Pdf::DocumentInfo has it; times without offset are universal time.
std::string DateOf(const std::string& text)
{
    const bool isNow = CLI::detail::to_lower(text) == "now";
    QDateTime date =
        isNow ? QDateTime::currentDateTimeUtc() : QDateTime::fromString(QString::fromStdString(text), Qt::ISODate);
    if (date.isValid() && date.timeSpec() == Qt::LocalTime)
        date.setTimeSpec(Qt::UTC);
    if (!date.isValid() || date.date().year() < 1 || date.date().year() > 9999)
        throw CLI::ValidationError("--date", "'" + text + "' is not a date like 2024-05-06 or 2024-05-06T07:08:09Z");
    return date.toString(Qt::ISODate).toStdString();
}

std::vector<std::string> NamesIn(const std::string& list)
{
    std::vector<std::string> names;
    for (std::size_t start = 0; start <= list.size();) {
        const std::size_t end = std::min(list.find(',', start), list.size());
        names.push_back(CLI::detail::trim_copy(list.substr(start, end - start)));
        start = end + 1;
    }
    if (std::ranges::any_of(names, &std::string::empty))
        throw CLI::ValidationError("--views", "'" + list + "' has an empty name in it");
    return names;
}

/// Texts of the command line may hold anything.
auto KeepOneLine(std::string& target)
{
    return [&target](const std::string& text) { target = OneLine(text); };
}

void AddSheetOptions(CLI::App& command, PdfOptions& options)
{
    SheetOptions& sheet = options.sheet;
    command
        .add_option_function<std::string>(
            "--title", [&sheet](const std::string& text) { sheet.title = OneLine(text); },
            "Title of the document, shown above the model (default: the name of SCENE); '' for none")
        ->type_name("TEXT");
    command.add_option_function<std::string>("--author", KeepOneLine(sheet.author), "Author of the document")
        ->type_name("TEXT");
    command
        .add_option_function<std::string>(
            "--caption", [&sheet](const std::string& text) { sheet.caption = OneLine(text); },
            "Text below the model (default: how to see it in 3D); '' for none")
        ->type_name("TEXT");
    command
        .add_option_function<std::string>(
            "--page-size", [&sheet](const std::string& text) { SetPageSize(sheet, text); },
            "a3, a4, a5, letter, tabloid, 16:9, or millimetres like 200x150 (default: a4)")
        ->type_name("SIZE");
    AddChoice<Orientation>(command, "--orientation", sheet.orientation,
                           {{"portrait", Orientation::Portrait}, {"landscape", Orientation::Landscape}},
                           "portrait or landscape (default: landscape, or as the millimetres say)")
        ->type_name("WAY");
    command
        .add_option_function<double>(
            "--margin", [&sheet](double margin) { sheet.margin = margin * PointsPerMillimetre; },
            "Keep MM millimetres free along the edges of the page (default: 15)")
        ->type_name("MM")
        ->check(Number("a number of millimetres", [](double margin) { return margin >= 0.0 && margin <= 1000.0; }));
    command
        .add_option_function<std::string>("--lang", KeepOneLine(sheet.language),
                                          "Language of the document, like en or de-CH (default: en)")
        ->type_name("CODE");
    command
        .add_option_function<std::string>(
            "--date", [&sheet](const std::string& text) { sheet.date = DateOf(text); },
            "Date the document: now, or like 2024-05-06T07:08:09Z (default: no date, equal input gives equal bytes)")
        ->type_name("DATE");
}

void AddTemplateOptions(CLI::App& command, PdfOptions& options)
{
    // What makes a place complete is checked when everything is parsed.
    const auto place = [&options]() -> Pdf::TemplatePlace& {
        return options.place ? *options.place : options.place.emplace();
    };
    CLI::Option* const file = command.add_option_function<std::string>(
        "--template", [place](const std::string& name) { place().file = name; },
        "Put the model into a page of SHEET, a PDF file that otherwise stays as it is");
    file->type_name("SHEET");
    OfferFiles(*file, {"pdf"});
    for (const char* const ofNewPages :
         {"--title", "--author", "--caption", "--page-size", "--orientation", "--margin", "--lang", "--date"})
        file->excludes(command.get_option(ofNewPages));
    command
        .add_option_function<std::size_t>(
            "--page", [place](std::size_t page) { place().page = page; }, "Page of SHEET, from 1 (default: 1)")
        ->type_name("N")
        ->needs(file)
        ->check(Number("a number of 1 or more", [](double number) { return number >= 1.0 && number < 1e9; }));
    command
        .add_option_function<std::string>(
            "--rect", [place](const std::string& text) { SetRectangle(place().rectangle, text); },
            "Place on the page: points from the lower left corner of what is seen, width and height "
            "(default: the whole page)")
        ->type_name("X,Y,W,H")
        ->needs(file);
    command
        .add_option_function<std::string>(
            "--field", [place](const std::string& name) { place().field = name; },
            "Take the place of the form field NAME, which goes")
        ->type_name("NAME")
        ->needs(file);
}

void AddLookOptions(CLI::App& command, PdfOptions& options)
{
    AddChoice<Pdf::Activation>(command, "--activate", options.activation,
                               {{"click", Pdf::Activation::Click},
                                {"page-visible", Pdf::Activation::PageVisible},
                                {"page-open", Pdf::Activation::PageOpen}},
                               "When the model becomes live: click, page-visible or page-open (default: click)")
        ->type_name("WHEN");
    command
        .add_option_function<std::string>(
            "--views", [&options](const std::string& list) { options.views = NamesIn(list); },
            "Views in the reader's list: standard views (iso, front, back, left, right, top, bottom) and cameras of "
            "the scene (default: iso, all cameras, front, top, right)")
        ->type_name("NAME,...");
    command.add_option("--view", options.view, "View that is shown first (default: the first of the views)")
        ->type_name("NAME");
    command.add_flag("--buttons", options.buttons, "Add a row of buttons for the views below the model");
    command
        .add_option_function<std::string>(
            "--background",
            [&options](const std::string& text) { options.background = ColourOf("--background", text); },
            "Colour behind the model, like white or #ff8000 (default: white)")
        ->type_name("COLOR");
    AddChoice<std::string>(command, "--lighting", options.lighting, LightingNames(),
                           "artwork, none, white, day, night, hard, primary, blue, red, cube, cad or headlamp "
                           "(default: cad)")
        ->type_name("SCHEME");
    AddChoice<std::string>(command, "--render-mode", options.renderMode, RenderModeNames(),
                           "solid, solidwireframe, solidoutline, transparent, wireframe, illustration, ... "
                           "(default: solid)")
        ->type_name("MODE");
    command.add_flag_callback(
        "--no-toolbar", [&options] { options.toolbar = false; }, "Hide the reader's 3D toolbar at first");
    command.add_flag_callback(
        "--no-autoplay", [&options] { options.startsPlaying = false; },
        "Play what moves only when the reader asks for it");
    command.add_flag("--model-tree", options.modelTree, "Show the reader's model tree at first");
    command
        .add_option_function<std::string>("--description", KeepOneLine(options.description),
                                          "What the model shows, for screen readers")
        ->type_name("TEXT");
    command
        .add_option("--poster-dpi", options.posterDpi,
                    "Pixels of the picture per inch of the page (default: 150, fewer on pages beyond A3)")
        ->type_name("N")
        ->check(Number("a number from 10 to 1200", [](double dpi) { return dpi >= 10.0 && dpi <= 1200.0; }));
}

} // namespace

void AddPdfOptions(CLI::App& command, PdfOptions& options)
{
    const std::size_t before = command.get_options().size();
    AddSheetOptions(command, options);
    AddTemplateOptions(command, options);
    AddLookOptions(command, options);
    AddModelChoiceOptions(command, options.model);
    OfferWords(*command.get_option("--view"), {"iso", "front", "back", "left", "right", "top", "bottom"});
    OfferWords(*command.get_option("--background"), {"white", "black", "grey"});
    OfferWords(*command.get_option("--page-size"), {"a3", "a4", "a5", "letter", "tabloid", "16:9"});
    const std::vector<CLI::Option*> all = command.get_options({});
    std::for_each(all.begin() + static_cast<std::ptrdiff_t>(before), all.end(),
                  [](CLI::Option* option) { option->group(Group); });
}

void FinishPdfOptions(PdfOptions& options)
{
    SheetOptions& sheet = options.sheet;
    const bool isTurned = sheet.orientation == Orientation::Portrait    ? sheet.width > sheet.height
                          : sheet.orientation == Orientation::Landscape ? sheet.width < sheet.height
                                                                        : false;
    if (isTurned)
        std::swap(sheet.width, sheet.height);
    if (options.place && options.place->file.empty())
        throw UsageError("the name of the template is empty");
}

void RefusePdfOptions(const CLI::App& command)
{
    for (const CLI::Option* const option : command.get_options()) {
        if (option->get_group() == Group && option->count() > 0)
            throw UsageError(option->get_name() + " is for PDF output (a name that ends in .pdf, or '--format pdf')");
    }
}

} // namespace Orvel::Cli
