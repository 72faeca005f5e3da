#include "tool/cli/ShownModel.h"

#include "platform/prcfile/PRCReader.h"
#include "platform/prcfile/PRCScene.h"
#include "tool/cli/CommandListener.h"
#include "tool/cli/Errors.h"
#include "tool/cli/ExportOptions.h"
#include "tool/cli/Text.h"
#include "tool/cli/WriteScene.h"
#include "tool/import/ImportReport.h"
#include "tool/render/PrcRenderScene.h"
#include "tool/views/CameraViews.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace Orvel::Cli
{

namespace
{

prc::Model::PRCModel Exported(COrvelDocument& document, const Import::LoadOptions& load)
{
    ExportOptions options;
    options.maximumTextureSize = static_cast<int>(load.largestTextureSide.value_or(1024));
    options.output = (load.temporaryFolder / "shown.prc").string();
    static_cast<void>(WriteScene(document, nullptr, options.output, options));
    return ReadBack(options.output);
}

ShownModel ReadScene(const std::string& path, const Import::LoadOptions& load, const WorkReporter& reporter)
{
    Import::ImportReport report;
    reporter.Stage("reading the scene");
    const Import::LoadedDocument loaded = Import::LoadDocument(path, load, report);
    report.CountLeftOut("hidden node, which the picture shows", "hidden nodes, which the picture shows",
                        loaded.summary.hiddenNodes);
    SendWarnings(reporter, report.Warnings(), false);
    reporter.Stage("preparing the scene");
    ShownModel shown;
    shown.scene = MakeRenderScene(Exported(*loaded.document, load), reporter);
    shown.cameras = Views::CameraViews(loaded.cameras, shown.scene.SupportFunction());
    shown.orientation = OrientationOf(loaded.summary, load.up);
    return shown;
}

} // namespace

prc::Model::PRCModel ReadBack(const std::filesystem::path& file)
{
    prc::ReadLimits limits;
    limits.unpackedBytes = limits.decodedBytes = std::uint64_t{1} << 50;
    limits.expansion = std::uint64_t{1} << 20;
    return prc::readPRCFile(file, limits);
}

Render::RenderScene MakeRenderScene(prc::Model::PRCModel model, const WorkReporter& reporter, bool strict)
{
    const prc::Model::PlacedScene placed = prc::Model::placeScene(model);
    Render::BuiltRenderScene built = Render::BuildRenderScene(model, placed);
    std::vector<std::string> warnings;
    for (const prc::Model::Finding& finding : model.findings)
        warnings.push_back(finding.message());
    for (const std::vector<std::string>& notes : {placed.notes, built.notes})
        warnings.insert(warnings.end(), notes.begin(), notes.end());
    SendWarnings(reporter, warnings, strict);
    return std::move(built.scene);
}

Views::Orientation OrientationOf(const Import::BuildSummary& built, Import::Up wanted)
{
    const bool isYUp = built.unitChange && built.unitChange->to == Import::UpAxis::Y;
    return isYUp || wanted == Import::Up::Y ? Views::YUp : Views::ZUp;
}

Views::View ViewNamed(const std::string& name, double aspect, const ShownModel& shown)
{
    const auto camera = std::ranges::find(shown.cameras, name, &Views::View::name);
    if (camera != shown.cameras.end())
        return *camera;
    if (const std::optional<Views::StandardView> standard = Views::StandardViewNamed(name))
        return Views::MakeStandardView(*standard, shown.orientation, aspect, shown.scene.SupportFunction());
    std::string known = "iso, front, back, left, right, top, bottom";
    for (const Views::View& view : shown.cameras)
        known += ", " + Quoted(view.name);
    throw Failure("there is no view " + Quoted(name) + "; there are " + known);
}

ShownModel ReadShownModel(const ModelInput& input, const Import::LoadOptions& load, const WorkReporter& reporter)
{
    if (!BeginsLikeModelFile(input.file))
        return ReadScene(input.file, load, reporter);
    reporter.Stage("reading the file");
    ShownModel shown;
    const ModelSource source(input);
    SendWarnings(reporter, source.Warnings(), false);
    shown.scene = MakeRenderScene(ReadModel(source, input), reporter);
    shown.orientation = OrientationOf({}, load.up);
    return shown;
}

} // namespace Orvel::Cli
