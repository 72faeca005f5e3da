#include "tool/cli/InspectCommand.h"

#include "tool/cli/CommandListener.h"
#include "tool/cli/Console.h"
#include "tool/cli/Errors.h"
#include "tool/cli/InputFile.h"
#include "tool/cli/InspectReport.h"
#include "tool/cli/PRCInput.h"
#include "tool/cli/Supervisor.h"
#include "tool/cli/Text.h"

#include <utility>

namespace Orvel::Cli
{

namespace
{

ReportParts PartsOf(const InspectOptions& options)
{
    if (!options.sections && !options.tree && !options.materials)
        return {};
    return {options.sections, options.tree, options.tree, options.materials};
}

/// The work of the supervised process: the text to print.
nlohmann::json ReadAndReport(const InspectOptions& options, const WorkReporter& reporter)
{
    InspectedModel inspected;
    inspected.file = options.input.file;
    reporter.Stage("reading the file");
    const ModelSource source(options.input);
    for (const std::string& warning : source.Warnings())
        reporter.Warning(warning);
    inspected.pdf = source.Pdf();
    inspected.model = ReadModel(source, options.input);
    reporter.Stage("placing what was read");
    inspected.scene = prc::Model::placeScene(inspected.model);
    inspected.statistics = StatisticsOf(inspected.model, inspected.scene);
    for (const prc::Model::Finding& finding : inspected.model.findings)
        reporter.Warning(finding.message());
    for (const std::string& note : inspected.scene.notes)
        reporter.Warning(note);
    reporter.Stage("writing the report");
    const ReportParts parts = PartsOf(options);
    return options.json ? JsonReport(inspected, parts) : TextReport(inspected, parts);
}

} // namespace

void RunInspect(const InspectOptions& options)
{
    std::string report;
    {
        const SignalWatch signals;
        const InputFile input = ExamineInput(options.input.file);
        CommandListener listener(false);
        const Work work = [&options](const WorkReporter& reporter) { return ReadAndReport(options, reporter); };
        try {
            report = RunSupervised(work, LimitsFor(options.limits, input.size), signals, listener).get<std::string>();
        } catch (const Failure& failure) {
            throw Failure("cannot inspect " + Quoted(options.input.file) + ": " + failure.what());
        }
        listener.EndProgress();
    }
    PrintResult(report);
}

} // namespace Orvel::Cli
