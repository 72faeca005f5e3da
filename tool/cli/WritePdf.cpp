#include "tool/cli/WritePdf.h"

#include "animation/COrvelKeyFrameManager.h"
#include "animation/COrvelSequenceContainer.h"
#include "platform/prcfile/PRCScene.h"
#include "tool/cli/CommandListener.h"
#include "tool/cli/Errors.h"
#include "tool/cli/ModelStatistics.h"
#include "tool/cli/PicturePng.h"
#include "tool/cli/ShownModel.h"
#include "tool/cli/Text.h"
#include "tool/cli/Version.h"
#include "tool/import/DistinctNames.h"
#include "tool/import/ImportReport.h"
#include "tool/import/MappedFile.h"
#include "tool/pdf/DocumentInfo.h"
#include "tool/pdf/PageDesign.h"
#include "tool/pdf/PdfModels.h"
#include "tool/player/FileTree.h"
#include "tool/player/PlayerScript.h"
#include "tool/render/Renderer.h"
#include "tool/views/CameraViews.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <system_error>
#include <utility>

namespace Orvel::Cli
{

namespace
{

/// A model on its way into a PDF.
struct PdfModel
{
    std::span<const std::uint8_t> prc; ///< not owned
    ShownModel shown;
    double unitInMillimetres = 1.0;
    std::string script; ///< see Pdf::Artwork
    bool plays = false;
    std::string flight; ///< see MakeViews
};

std::span<const std::uint8_t> BytesOf(const Import::MappedFile& file)
{
    return {reinterpret_cast<const std::uint8_t*>(file.Bytes().data()), file.Bytes().size()};
}

/// The views of the reader's list, and which of them comes first.
struct ViewList
{
    std::vector<Views::View> views;
    std::size_t first = 0;
};

/// @param flight the view at which a flight of the camera begins, when it begins with the live model: the picture shows
///               the same. Empty: none.
ViewList MakeViews(const PdfOptions& options, const ShownModel& shown, double aspect, const std::string& flight)
{
    ViewList list;
    const auto add = [&](const std::string& name) { list.views.push_back(ViewNamed(name, aspect, shown)); };
    if (options.views.empty()) {
        const auto addStandard = [&](Views::StandardView view) {
            list.views.push_back(
                Views::MakeStandardView(view, shown.orientation, aspect, shown.scene.SupportFunction()));
        };
        addStandard(Views::StandardView::Iso);
        list.views.insert(list.views.end(), shown.cameras.begin(), shown.cameras.end());
        for (const auto view : {Views::StandardView::Front, Views::StandardView::Top, Views::StandardView::Right})
            addStandard(view);
    } else {
        std::ranges::for_each(options.views, add);
    }
    const std::string& first = options.view.empty() && options.views.empty() ? flight : options.view;
    if (!first.empty()) {
        const Views::View wanted = ViewNamed(first, aspect, shown);
        // A camera may be called like a standard view.
        auto found = std::ranges::find_if(list.views, [&wanted](const Views::View& view) {
            return view.name == wanted.name && view.eye == wanted.eye && view.target == wanted.target;
        });
        if (found == list.views.end())
            found = list.views.insert(list.views.begin(), wanted);
        list.first = static_cast<std::size_t>(found - list.views.begin());
    }
    std::vector<std::string> names;
    for (const Views::View& view : list.views)
        names.push_back(OneLine(view.name));
    names = Import::DistinctNames(std::move(names), "View");
    for (std::size_t i = 0; i < names.size(); ++i)
        list.views[i].name = names[i];
    return list;
}

std::string TitleOf(const ExportOptions& options)
{
    return options.pdf->sheet.title.value_or(OneLine(std::filesystem::path(options.scene).stem().string()));
}

std::string CaptionOf(const PdfOptions& options)
{
    if (options.sheet.caption)
        return *options.sheet.caption;
    const bool byClick = options.activation == Pdf::Activation::Click;
    return std::string("This picture is a 3D model. To turn it, open the file in Adobe Acrobat or Adobe Reader on a "
                       "computer, allow 3D content when asked, and ") +
           (byClick ? "click the picture." : "drag with the mouse.");
}

std::unique_ptr<Pdf::PdfSheet> NewSheet(const ExportOptions& options)
{
    const PdfOptions& pdf = *options.pdf;
    Pdf::DocumentInfo info;
    info.title = TitleOf(options);
    info.author = pdf.sheet.author;
    info.subject = pdf.description;
    info.producer = "orvelprc " + Version();
    info.date = pdf.sheet.date;
    info.language = pdf.sheet.language;
    Pdf::PageDesign design;
    design.width = pdf.sheet.width;
    design.height = pdf.sheet.height;
    design.margin = pdf.sheet.margin;
    design.title = info.title;
    design.author = info.author;
    design.caption = CaptionOf(pdf);
    design.hasButtons = pdf.buttons;
    return std::make_unique<Pdf::PdfSheet>(design, info);
}

std::string DescriptionOf(const ExportOptions& options, const std::vector<Views::View>& views)
{
    if (!options.pdf->description.empty())
        return options.pdf->description;
    const std::string title = TitleOf(options);
    std::string text = title.empty() ? "Interactive 3D model" : "Interactive 3D model: " + title;
    text += ". Views: ";
    for (std::size_t i = 0; i < views.size(); ++i)
        text += (i == 0 ? "" : ", ") + views[i].name;
    return text;
}

Pdf::Artwork MakeArtwork(PdfModel& model, ViewList list, const ExportOptions& options)
{
    const PdfOptions& pdf = *options.pdf;
    Pdf::Artwork artwork;
    artwork.prc = model.prc;
    artwork.description = DescriptionOf(options, list.views);
    artwork.views = std::move(list.views);
    artwork.defaultView = list.first;
    artwork.background = pdf.background;
    artwork.lighting = pdf.lighting;
    artwork.renderMode = pdf.renderMode;
    artwork.activation = pdf.activation;
    artwork.toolbar = pdf.toolbar;
    artwork.modelTree = pdf.modelTree;
    artwork.unitInMillimetres = model.unitInMillimetres;
    artwork.script = std::move(model.script);
    artwork.plays = model.plays;
    return artwork;
}

/// The picture of the view that comes first, as large as the model on the page.
Pdf::Poster TakePoster(const PdfModel& model, const Pdf::Artwork& artwork, const Pdf::PdfSheet& sheet,
                       const std::optional<double>& dpi)
{
    const double area = sheet.ModelWidth() * sheet.ModelHeight();
    const double usual = std::min(UsualPosterDpi / 72.0, std::sqrt(MostUsualPosterPixels / area));
    const double longest = std::max(sheet.ModelWidth(), sheet.ModelHeight());
    const double scale = std::min(dpi ? *dpi / 72.0 : usual, Render::LargestSide / longest);
    const auto pixels = [scale](double points) {
        return static_cast<std::uint32_t>(std::max(1L, std::lround(points * scale)));
    };
    Render::PictureOptions picture;
    picture.width = pixels(sheet.ModelWidth());
    picture.height = pixels(sheet.ModelHeight());
    picture.background = artwork.background;
    picture.up = model.shown.orientation.up;
    const Render::Renderer renderer(model.shown.scene);
    return Pdf::PosterFromPng(EncodePng(renderer.Render(artwork.views[artwork.defaultView], picture)));
}

/// @return the names of the views.
std::vector<std::string> WritePdf(Pdf::PdfSheet& sheet, PdfModel model, const ExportFiles& files,
                                  const ExportOptions& options, const WorkReporter& reporter)
{
    const PdfOptions& pdf = *options.pdf;
    const double aspect = sheet.ModelWidth() / sheet.ModelHeight();
    const Pdf::Artwork artwork = MakeArtwork(model, MakeViews(pdf, model.shown, aspect, model.flight), options);
    reporter.Stage("taking the picture");
    const Pdf::Poster poster = TakePoster(model, artwork, sheet, pdf.posterDpi);
    model.shown.scene = {};
    reporter.Stage("writing the PDF");
    sheet.Place(artwork, poster);
    SendWarnings(reporter, sheet.Warnings(), options.strict);
    try {
        sheet.Write(files.pdf);
    } catch (const std::system_error& error) {
        throw CannotWrite(options.output, error.code().message());
    } catch (const Pdf::PdfError& error) {
        throw Failure("template " + Quoted(pdf.place->file.string()) + ": " + error.what());
    }
    std::vector<std::string> names;
    for (const Views::View& view : artwork.views)
        names.push_back(view.name);
    return names;
}

/// The view at which the flight of the camera begins takes the place of the camera's own, or joins the views.
void AddFlight(const AnimatedRun& run, PdfModel& pdfModel)
{
    if (run.mapper.cameraAnimation.empty())
        return;
    const COrvelBasicCamera& start = run.mapper.cameraAnimation.front().first;
    std::vector<Views::View>& cameras = pdfModel.shown.cameras;
    auto view = std::ranges::find(cameras, run.facts.camera, &Views::View::name);
    if (view == cameras.end()) {
        view = cameras.emplace(view);
        view->name = run.facts.camera;
        view->fieldOfViewInDegrees = std::clamp(start.FOV(), 0.1, 170.0);
        view->span = Views::Span::Height;
    }
    const auto point = [](const COrvel3DVertex& vertex) { return Eigen::Vector3d(vertex.X(), vertex.Y(), vertex.Z()); };
    view->eye = point(start.Position());
    view->target = point(start.LookAt());
    view->up = point(start.CamUp());
    pdfModel.flight = view->name;
}

void AddPlayer(const COrvelDocument& document, const AnimatedRun& run, const prc::Model::PRCModel& model,
               PdfModel& pdfModel, const WorkReporter& reporter, const ExportOptions& options)
{
    COrvelKeyFrameManager& timeline = *COrvelKeyFrameManager::Instance();
    std::vector<COrvelSequence*> sequences;
    timeline.SequenceContainer()->ListSequences(sequences, true, false);
    Player::PlayerScript player = Player::MakePlayerScript(
        {document, run.mapper, run.facts, model, timeline, std::move(sequences), options.pdf->startsPlaying});
    pdfModel.script = std::move(player.text);
    pdfModel.plays = player.moves;
    Import::ImportReport report;
    report.CountLeftOut("other picture of a variant", "other pictures of variants", player.otherPictures);
    SendWarnings(reporter, report.Warnings(), options.strict);
}

ExportSummary SummaryOf(const ModelSource& source, const prc::Model::PRCModel& model)
{
    const prc::Model::PlacedScene placed = prc::Model::placeScene(model);
    const ModelStatistics statistics = StatisticsOf(model, placed);
    ExportSummary summary;
    summary.inputFormat = source.Pdf() ? "PRC in a PDF" : "PRC";
    summary.nodes = placed.occurrences.size();
    summary.objects = statistics.placedMeshes;
    summary.meshes = statistics.meshes.size();
    summary.triangles = {statistics.storedTriangles, statistics.placedTriangles};
    for (const prc::Model::FileStructure& structure : model.structures)
        summary.materials += structure.globals.materials.size();
    return summary;
}

} // namespace

std::unique_ptr<Pdf::PdfSheet> MakeSheet(const ExportOptions& options)
{
    const std::optional<Pdf::TemplatePlace>& place = options.pdf->place;
    try {
        return place ? std::make_unique<Pdf::PdfSheet>(*place, options.pdf->buttons) : NewSheet(options);
    } catch (const Pdf::PdfError& error) {
        throw Failure(place ? "template " + Quoted(place->file.string()) + ": " + error.what() : error.what());
    }
}

std::vector<std::string> WriteScenePdf(Pdf::PdfSheet& sheet, const Import::LoadedDocument& loaded,
                                       const AnimatedRun* run, const ExportFiles& files, const ExportOptions& options,
                                       const WorkReporter& reporter)
{
    reporter.Stage("reading the model back");
    const Import::MappedFile file(files.prc);
    PdfModel pdfModel;
    pdfModel.prc = BytesOf(file);
    prc::Model::PRCModel model = ReadBack(files.prc);
    pdfModel.unitInMillimetres = model.unitInMillimetres;
    if (run) {
        AddPlayer(*loaded.document, *run, model, pdfModel, reporter, options);
        Player::SuppressHiddenGroups(*loaded.document, run->mapper, model);
    }
    pdfModel.shown.scene = MakeRenderScene(std::move(model), reporter, options.strict);
    pdfModel.shown.cameras = Views::CameraViews(loaded.cameras, pdfModel.shown.scene.SupportFunction());
    if (run && options.pdf->startsPlaying)
        AddFlight(*run, pdfModel);
    pdfModel.shown.orientation = OrientationOf(loaded.summary, options.load.up);
    return WritePdf(sheet, std::move(pdfModel), files, options, reporter);
}

ExportSummary WriteModelPdf(Pdf::PdfSheet& sheet, const ExportFiles& files, const ExportOptions& options,
                            const WorkReporter& reporter)
{
    reporter.Stage("reading the file");
    const ModelSource source(options.pdf->model);
    SendWarnings(reporter, source.Warnings(), options.strict);
    PdfModel pdfModel;
    pdfModel.prc = source.Bytes();
    prc::Model::PRCModel model = ReadModel(source, options.pdf->model);
    pdfModel.unitInMillimetres = model.unitInMillimetres;
    ExportSummary summary = SummaryOf(source, model);
    pdfModel.shown.scene = MakeRenderScene(std::move(model), reporter, options.strict);
    pdfModel.shown.orientation = OrientationOf({}, options.load.up);
    summary.views = WritePdf(sheet, std::move(pdfModel), files, options, reporter);
    return summary;
}

} // namespace Orvel::Cli
