#include "tool/cli/ShownModel.h"

#include "platform/prcfile/PRCReader.h"
#include "platform/prcfile/PRCScene.h"
#include "tool/cli/CommandListener.h"
#include "tool/cli/ExportOptions.h"
#include "tool/cli/WriteScene.h"
#include "tool/import/ImportReport.h"
#include "tool/render/PrcRenderScene.h"
#include "tool/views/CameraViews.h"

#include <string>
#include <utility>

namespace Orvel::Cli
{

namespace
{

/// @return what a picture shows of the model, which is freed.
Render::RenderScene Prepare(prc::Model::PRCModel model, const WorkReporter& reporter)
{
    const prc::Model::PlacedScene placed = prc::Model::placeScene(model);
    Render::BuiltRenderScene built = Render::BuildRenderScene(model, placed);
    for (const prc::Model::Finding& finding : model.findings)
        reporter.Warning(finding.message());
    for (const std::vector<std::string>& notes : {placed.notes, built.notes})
        SendWarnings(reporter, notes, false);
    return std::move(built.scene);
}

prc::Model::PRCModel Exported(COrvelDocument& document, const Import::LoadOptions& load)
{
    ExportOptions options;
    options.maximumTextureSize = static_cast<int>(load.largestTextureSide.value_or(1024));
    options.output = (load.temporaryFolder / "shown.prc").string();
    ExportFiles files;
    files.output = options.output;
    WriteScene(document, nullptr, files, options);
    return prc::readPRCFile(options.output);
}

Views::Orientation OrientationOf(const Import::BuildSummary& built, Import::Up wanted)
{
    const bool isYUp = built.unitChange && built.unitChange->to == Import::UpAxis::Y;
    return isYUp || wanted == Import::Up::Y ? Views::YUp : Views::ZUp;
}

ShownModel ReadScene(const std::string& path, const Import::LoadOptions& load, const WorkReporter& reporter)
{
    Import::ImportReport report;
    reporter.Stage("reading the scene");
    const Import::LoadedDocument loaded = Import::LoadDocument(path, load, report);
    SendWarnings(reporter, report.Warnings(), false);
    reporter.Stage("preparing the scene");
    ShownModel shown;
    shown.scene = Prepare(Exported(*loaded.document, load), reporter);
    shown.cameras = Views::CameraViews(loaded.cameras, shown.scene.SupportFunction());
    shown.orientation = OrientationOf(loaded.summary, load.up);
    return shown;
}

} // namespace

ShownModel ReadShownModel(const ModelInput& input, const Import::LoadOptions& load, const WorkReporter& reporter)
{
    if (!BeginsLikeModelFile(input.file))
        return ReadScene(input.file, load, reporter);
    reporter.Stage("reading the file");
    ShownModel shown;
    const ModelSource source(input);
    SendWarnings(reporter, source.Warnings(), false);
    shown.scene = Prepare(ReadModel(source, input), reporter);
    return shown;
}

} // namespace Orvel::Cli
