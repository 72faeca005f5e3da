#include "tool/cli/ExportCommand.h"

#include "tool/cli/CommandListener.h"
#include "tool/cli/Console.h"
#include "tool/cli/Errors.h"
#include "tool/cli/ExportSummary.h"
#include "tool/cli/InputFile.h"
#include "tool/cli/Supervisor.h"
#include "tool/cli/TemporaryFolder.h"
#include "tool/cli/Text.h"
#include "tool/import/ImportReport.h"
#include "tool/import/LoadDocument.h"
#include "writer/COrvelPRCWriter.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace Orvel::Cli
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr const char* Extension = ".prc";

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
    summary.outputFormat = "prc";
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

void WritePrc(COrvelDocument& document, const std::string& file, const ExportOptions& options)
{
    COrvelPRCWriter writer;
    writer.SetMaximumTextureSize(options.maximumTextureSize);
    bool written = false;
    try {
        written = writer.Export(&document, COrvelString(file), nullptr, nullptr, nullptr, nullptr, COrvelUnit());
    } catch (const std::system_error& error) {
        // The name of the file would tell the user nothing: it is the one that takes the output's place meanwhile.
        throw CannotWrite(options.output, error.code().message());
    }
    if (!written)
        throw Failure("the scene could not be written");
}

/// The work of the supervised process.
nlohmann::json ImportAndWrite(const ExportOptions& options, const Import::LoadOptions& load, const std::string& file,
                              const WorkReporter& reporter)
{
    Import::ImportReport report;
    reporter.Stage("reading the scene");
    const Import::LoadedDocument loaded = Import::LoadDocument(options.scene, load, report);
    report.CountLeftOut("animation", "animations", loaded.clips.size());
    SendWarnings(reporter, report.Warnings(), options.strict);
    reporter.Stage("writing the file");
    WritePrc(*loaded.document, file, options);
    return SummaryOf(loaded.summary);
}

ExportSummary RunWork(const ExportOptions& options, const InputFile& input, const Import::LoadOptions& load,
                      const OutputTarget& target, const SignalWatch& signals, CommandListener& listener)
{
    const Work work = [&](const WorkReporter& reporter) {
        return ImportAndWrite(options, load, target.FileToWrite(), reporter);
    };
    try {
        return RunSupervised(work, LimitsFor(options.limits, input.size), signals, listener).get<ExportSummary>();
    } catch (const Failure& failure) {
        throw Failure("cannot export " + Quoted(options.scene) + ": " + failure.what());
    }
}

void PrintSummary(const ExportSummary& summary, const ExportOptions& options, bool stdoutIsTaken)
{
    if (options.quiet && !options.json)
        return;
    const std::string text = options.json ? JsonOf(summary) : TextOf(summary);
    if (stdoutIsTaken) {
        PrintMessage(text);
        return;
    }
    try {
        PrintResult(text);
    } catch (const Failure& failure) {
        // The file is in its place. Only who asked for JSON misses something without the summary.
        if (options.json)
            throw;
        PrintWarning(failure.what());
    }
}

} // namespace

void RunExport(const ExportOptions& options)
{
    const Clock::time_point start = Clock::now();
    ExportSummary summary;
    bool stdoutIsTaken = false;
    {
        // From here on a signal must not end the program before what is temporary is gone.
        const SignalWatch signals;
        const InputFile input = ExamineInput(options.scene);
        const TemporaryFolder temporary;
        const auto target = OutputTarget::Open(options.output, Extension, input, options.existing, temporary.Path());
        Import::LoadOptions load = options.load;
        load.temporaryFolder = temporary.Path();
        load.largestTextureSide = static_cast<std::uint32_t>(options.maximumTextureSize);
        CommandListener listener(options.quiet);
        summary = RunWork(options, input, load, *target, signals, listener);
        listener.EndProgress();
        summary.bytes = target->Deliver(signals);
        summary.warnings = std::move(listener.warnings);
        stdoutIsTaken = target->IsStandardOutput();
    }
    summary.input = options.scene;
    summary.output = options.output;
    summary.seconds = std::chrono::duration<double>(Clock::now() - start).count();
    PrintSummary(summary, options, stdoutIsTaken);
}

} // namespace Orvel::Cli
