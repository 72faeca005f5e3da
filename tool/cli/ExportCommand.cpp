#include "tool/cli/ExportCommand.h"

#include "platform/core/COrvelUUID.h"
#include "tool/animation/AnimatedScene.h"
#include "tool/animation/AnimationFile.h"
#include "tool/cli/CommandListener.h"
#include "tool/cli/Console.h"
#include "tool/cli/Errors.h"
#include "tool/cli/ExportSummary.h"
#include "tool/cli/ExportTimings.h"
#include "tool/cli/InputFile.h"
#include "tool/cli/Supervisor.h"
#include "tool/cli/TemporaryFolder.h"
#include "tool/cli/Text.h"
#include "tool/cli/WritePdf.h"
#include "tool/cli/WriteScene.h"
#include "tool/import/DistinctNames.h"
#include "tool/import/ImportReport.h"
#include "tool/import/LoadDocument.h"
#include "tool/script/ApplyScript.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Orvel::Cli
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr const char* PrcExtension = ".prc";
constexpr const char* PdfExtension = ".pdf";
constexpr const char* AnimationExtension = ".orvelanim";
constexpr const char* RecordExtension = ".json";

std::string AxisName(Import::UpAxis axis)
{
    switch (axis) {
    case Import::UpAxis::X:
        return "x";
    case Import::UpAxis::Y:
        return "y";
    case Import::UpAxis::Z:
        return "z";
    case Import::UpAxis::Unknown:
        break;
    }
    return {};
}

ExportSummary SummaryOf(const Import::BuildSummary& built)
{
    ExportSummary summary;
    summary.inputFormat = built.format;
    summary.nodes = built.nodes;
    summary.objects = built.objects;
    summary.meshes = built.meshes;
    summary.triangles = {built.trianglesStored, built.trianglesPlaced};
    summary.materials = built.materials;
    for (const Import::TextureFile& texture : built.textures)
        summary.textures.push_back(
            {texture.name, texture.width, texture.height, texture.storedWidth, texture.storedHeight});
    if (built.unitChange) {
        summary.topGroup = {std::string(Import::UnitGroupName), built.unitChange->scale,
                            AxisName(built.unitChange->from), AxisName(built.unitChange->to)};
    }
    return summary;
}

Script::SceneScript ScriptOf(const ExportOptions& options)
{
    Script::SceneScript script = options.script.empty() ? Script::SceneScript() : Script::ReadScript(options.script);
    if (options.turntableFrames > 0)
        script.camera = Script::Turntable(options.turntableFrames);
    return script;
}

/// Whether there is something for a player to do.
bool HasMotion(const ExportOptions& options, const Import::LoadedDocument& loaded)
{
    return !loaded.clips.empty() || !loaded.variants.empty() || loaded.summary.hiddenNodes > 0 ||
           !options.script.empty() || options.turntableFrames > 0;
}

/// The animation, where any of the files shows it.
std::optional<Animate::AnimatedScene> MakeAnimation(const ExportOptions& options, const Import::LoadedDocument& loaded,
                                                    Import::ImportReport& report, const WorkReporter& reporter)
{
    if (!options.loadAnimation.empty()) {
        reporter.Stage("reading the animation");
        return Animate::LoadAnimation(loaded, options.loadAnimation, options.animation.mostFrames);
    }
    const bool isShown = !options.record.empty() || (options.pdf && HasMotion(options, loaded));
    if (!isShown && options.saveAnimation.empty()) {
        report.CountLeftOut("animation", "animations", loaded.clips.size());
        report.CountLeftOut("variant of materials", "variants of materials", loaded.variants.size());
        return std::nullopt;
    }
    reporter.Stage("sampling the animation");
    return Animate::MakeAnimatedScene(loaded, options.animation, report);
}

/// Refuses what only a scene can follow.
void CheckOptionsForModel(const ExportOptions& options)
{
    if (!options.pdf)
        throw Failure("it holds PRC already ('-o OUT.pdf' makes a PDF of it, 'orvelprc convert' takes it out)");
    if (!options.forScenes.empty())
        throw Failure(options.forScenes.front() + " is for scenes, and this file holds PRC already");
}

/// The work of the supervised process for a scene.
///
/// @param sheet for a PDF, else null.
ExportSummary ImportAndWrite(const ExportOptions& options, const Import::LoadOptions& load, const ExportFiles& files,
                             Pdf::PdfSheet* sheet, const WorkReporter& reporter)
{
    // Animation files name the entities of the scene by their GUIDs: the same ones in every run.
    constexpr std::uint64_t seedOfGuids = 0x67756964;
    COrvelUUID::SeedGenerator(seedOfGuids);
    Import::ImportReport report;
    reporter.Stage("reading the scene");
    Import::LoadedDocument loaded = Import::LoadDocument(options.scene, load, report);
    if (!options.pdf)
        report.CountLeftOut("hidden node, which the file shows", "hidden nodes, which the file shows",
                            loaded.summary.hiddenNodes);
    std::optional<Animate::AnimatedScene> animated = MakeAnimation(options, loaded, report, reporter);
    // Without what scripts add: that is said anew for each export.
    if (!files.animation.empty() && !Animate::SaveAnimation(*loaded.document, *animated, files.animation))
        throw CannotWrite(options.saveAnimation, "writing failed");
    const bool isShown = animated && (!files.record.empty() || options.pdf);
    Script::ScriptLooks looks;
    if (isShown)
        looks = Script::ApplyScript(ScriptOf(options), options.animation, loaded, *animated);
    SendWarnings(reporter, report.Warnings(), options.strict);
    reporter.Stage("writing the file");
    // Last of all: scripts and animation files know the nodes by the names that they have in the scene.
    if (options.pdf)
        Import::GiveDistinctNodeNames(*loaded.document);
    const auto run = WriteScene(*loaded.document, isShown ? &*animated : nullptr, files.prc, options);
    if (!files.record.empty())
        WriteRecordFile(*run, files.record, options);
    ExportSummary summary = SummaryOf(loaded.summary);
    if (sheet)
        summary.views = WriteScenePdf(*sheet, loaded, run.get(), files, options, reporter);
    return summary;
}

/// The work of the supervised process.
ExportSummary Export(const ExportOptions& options, const Import::LoadOptions& load, const ExportFiles& files,
                     const WorkReporter& reporter)
{
    const bool isModel = BeginsLikeModelFile(options.scene);
    if (isModel)
        CheckOptionsForModel(options);
    // First: what is wrong with a template shows before the long work.
    if (options.pdf)
        reporter.Stage("preparing the page");
    const auto sheet = options.pdf ? MakeSheet(options) : nullptr;
    ExportSummary summary = isModel ? WriteModelPdf(*sheet, files, options, reporter)
                                    : ImportAndWrite(options, load, files, sheet.get(), reporter);
    if (options.timings)
        summary.timings = TimesOfWriting();
    return summary;
}

/// What is usual for the file, and more for the picture in a PDF.
WorkLimits LimitsOf(const ExportOptions& options, const InputFile& input)
{
    WorkLimits limits = LimitsFor(options.limits, input.size);
    if (options.pdf && !options.limits.time) {
        constexpr double MicrosecondsPerPixel = 42.0; // as for a picture of `render`
        const double dots = options.pdf->posterDpi.value_or(0.0) / 72.0;
        const double wanted = options.pdf->sheet.width * options.pdf->sheet.height * dots * dots;
        limits.time += std::chrono::milliseconds(
            std::llround(std::max(wanted, MostUsualPosterPixels) * MicrosecondsPerPixel / 1000.0));
    }
    return limits;
}

/// The template, which is no place for the output.
InputFile ExamineTemplate(const ExportOptions& options)
{
    InputFile sheet = ExamineInput(options.pdf->place->file);
    RefuseInputAsOutput(options.output, sheet);
    return sheet;
}

ExportSummary RunWork(const ExportOptions& options, const InputFile& input, const Import::LoadOptions& load,
                      const ExportFiles& files, const SignalWatch& signals, CommandListener& listener)
{
    const Work work = [&](const WorkReporter& reporter) { return Export(options, load, files, reporter); };
    try {
        return RunSupervised(work, LimitsOf(options, input), signals, listener).get<ExportSummary>();
    } catch (const Failure& failure) {
        throw Failure("cannot export " + Quoted(options.scene) + ": " + failure.what());
    }
}

} // namespace

void RunExport(const ExportOptions& options)
{
    const Clock::time_point start = Clock::now();
    ExportSummary summary;
    std::vector<StageTime> stages;
    bool stdoutIsTaken = false;
    {
        // From here on a signal must not end the program before what is temporary is gone.
        const SignalWatch signals;
        InputFile input = ExamineInput(options.scene);
        if (!options.loadAnimation.empty())
            input.size += ExamineInput(options.loadAnimation).size;
        if (options.pdf && options.pdf->place)
            input.size += ExamineTemplate(options).size;
        const TemporaryFolder temporary;
        const auto open = [&](const std::string& name, const char* extension) {
            return OutputTarget::Open(name, extension, input, options.existing, temporary.Path());
        };
        const auto target = open(options.output, options.pdf ? PdfExtension : PrcExtension);
        const auto record = options.record.empty() ? nullptr : open(options.record, RecordExtension);
        const auto animation =
            options.saveAnimation.empty() ? nullptr : open(options.saveAnimation, AnimationExtension);
        const auto fileOf = [](const auto& result) { return result ? result->FileToWrite() : std::string(); };
        ExportFiles files{target->FileToWrite(), {}, fileOf(record), fileOf(animation)};
        if (options.pdf)
            files.pdf = std::exchange(files.prc, temporary.Path() / "model.prc");
        Import::LoadOptions load = options.load;
        load.temporaryFolder = temporary.Path();
        load.largestTextureSide = static_cast<std::uint32_t>(options.maximumTextureSize);
        CommandListener listener(options.quiet);
        summary = RunWork(options, input, load, files, signals, listener);
        listener.EndProgress();
        summary.bytes = target->Deliver(signals);
        if (record)
            record->Deliver(signals);
        if (animation)
            animation->Deliver(signals);
        summary.warnings = std::move(listener.warnings);
        stages = std::move(listener.stages);
        stdoutIsTaken = target->IsStandardOutput();
    }
    summary.input = options.scene;
    summary.output = options.output;
    summary.outputFormat = options.pdf ? "pdf" : "prc";
    summary.seconds = std::chrono::duration<double>(Clock::now() - start).count();
    if (options.timings)
        summary.timings = ExportTimings(stages, summary.timings, summary.seconds);
    if (options.json || !options.quiet)
        PrintSummary(options.json ? JsonOf(summary) : TextOf(summary), options.json, stdoutIsTaken);
}

} // namespace Orvel::Cli
