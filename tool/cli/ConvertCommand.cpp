#include "tool/cli/ConvertCommand.h"

#include "tool/cli/CommandListener.h"
#include "tool/cli/Console.h"
#include "tool/cli/ConvertSummary.h"
#include "tool/cli/Errors.h"
#include "tool/cli/InputFile.h"
#include "tool/cli/SideFiles.h"
#include "tool/cli/Supervisor.h"
#include "tool/cli/TemporaryFolder.h"
#include "tool/cli/Text.h"
#include "tool/convert/AssimpFile.h"
#include "tool/convert/GltfFile.h"
#include "tool/convert/MeshSceneBuilder.h"
#include "tool/convert/SceneUnits.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

namespace Orvel::Cli
{

namespace
{

using Clock = std::chrono::steady_clock;
using Path = std::filesystem::path;

std::string NameOf(ConvertFormat format)
{
    switch (format) {
    case ConvertFormat::Glb:
        return "glb";
    case ConvertFormat::Gltf:
        return "gltf";
    case ConvertFormat::Obj:
        return "obj";
    case ConvertFormat::Stl:
        return "stl";
    case ConvertFormat::Ply:
        return "ply";
    case ConvertFormat::Prc:
        break;
    }
    return "prc";
}

/// Where the working process writes.
struct WorkFiles
{
    std::string output;
    std::optional<Path> sideFolder; ///< nothing: the output stands alone
};

void WriteBytes(const ModelSource& source, const std::string& file)
{
    const auto bytes = source.Bytes();
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (!text.starts_with("PRC"))
        throw Failure("expected the signature 'PRC' at its start");
    std::ofstream stream(file, std::ios::binary);
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
    stream.close();
    if (!stream)
        throw Failure("the file could not be written");
}

/// Writes the file where the files beside it are, under the name that they are called after, and moves it.
std::vector<std::string> WriteObj(const Convert::MeshScene& scene, const ConvertOptions& options,
                                  const WorkFiles& files, Import::ImportReport& report)
{
    if (!files.sideFolder)
        return Convert::WriteFlat(scene, Convert::FlatFormat::ObjWithoutMaterials, files.output, report);
    const Path file = (*files.sideFolder / Path(options.output).stem()).concat(".obj");
    std::vector<std::string> sideFiles = Convert::WriteFlat(scene, Convert::FlatFormat::Obj, file, report);
    std::error_code otherFileSystem;
    std::filesystem::rename(file, files.output, otherFileSystem);
    if (otherFileSystem)
        std::filesystem::copy_file(file, files.output, std::filesystem::copy_options::overwrite_existing);
    return sideFiles;
}

std::vector<std::string> WriteScene(const Convert::MeshScene& scene, const ConvertOptions& options,
                                    const WorkFiles& files, Import::ImportReport& report)
{
    switch (options.format) {
    case ConvertFormat::Obj:
        return WriteObj(scene, options, files, report);
    case ConvertFormat::Stl:
        return Convert::WriteFlat(scene, Convert::FlatFormat::Stl, files.output, report);
    case ConvertFormat::Ply:
        return Convert::WriteFlat(scene, Convert::FlatFormat::Ply, files.output, report);
    default:
        Convert::WriteGltf(scene,
                           options.format == ConvertFormat::Glb ? Convert::GltfForm::Binary : Convert::GltfForm::Text,
                           files.output);
        return {};
    }
}

ConvertSummary SummaryOf(const Convert::MeshScene& scene)
{
    ConvertSummary summary;
    summary.nodes = scene.nodes.size();
    summary.meshes = scene.meshes.size();
    for (const Convert::Mesh& mesh : scene.meshes) {
        for (const Convert::Primitive& primitive : mesh.primitives)
            summary.triangles += primitive.indices.size() / 3;
    }
    summary.materials = scene.materials.size();
    summary.textures = scene.pictures.size();
    return summary;
}

/// The model as meshes, in the unit and axes of the format.
Convert::MeshScene ReadScene(const ModelSource& source, const ConvertOptions& options, const WorkReporter& reporter,
                             Import::ImportReport& report)
{
    reporter.Stage("reading the file");
    const prc::Model::PRCModel model = ReadModel(source, options.input);
    for (const prc::Model::Finding& finding : model.findings)
        report.Warn(finding.message());
    reporter.Stage("converting");
    const prc::Model::PlacedScene placed = prc::Model::placeScene(model);
    for (const std::string& note : placed.notes)
        report.Warn(note);
    Convert::MeshScene scene = Convert::BuildMeshScene(model, placed, report);
    const bool toMetres = options.format == ConvertFormat::Glb || options.format == ConvertFormat::Gltf;
    Convert::ApplyUnits(scene, {model.unitInMillimetres, toMetres, options.scale});
    return scene;
}

/// The work of the supervised process.
nlohmann::json ReadAndConvert(const ConvertOptions& options, const WorkFiles& files, const WorkReporter& reporter)
{
    reporter.Stage("reading the file");
    const ModelSource source(options.input);
    Import::ImportReport report;
    for (const std::string& warning : source.Warnings())
        report.Warn(warning);
    ConvertSummary summary;
    if (options.format == ConvertFormat::Prc) {
        WriteBytes(source, files.output);
    } else {
        const Convert::MeshScene scene = ReadScene(source, options, reporter, report);
        summary = SummaryOf(scene);
        reporter.Stage("writing the file");
        summary.sideFiles = WriteScene(scene, options, files, report);
    }
    SendWarnings(reporter, report.Warnings(), options.strict);
    return summary;
}

ConvertSummary RunWork(const ConvertOptions& options, const InputFile& input, const WorkFiles& files,
                       const SignalWatch& signals, CommandListener& listener)
{
    const Work work = [&](const WorkReporter& reporter) { return ReadAndConvert(options, files, reporter); };
    try {
        return RunSupervised(work, LimitsFor(options.limits, input.size), signals, listener).get<ConvertSummary>();
    } catch (const Failure& failure) {
        throw Failure("cannot convert " + Quoted(options.input.file) + ": " + failure.what());
    }
}

/// The whole of a run but for the summary's text.
ConvertSummary ConvertToTarget(const ConvertOptions& options, bool& stdoutIsTaken)
{
    // From here on a signal must not end the program before what is temporary is gone.
    const SignalWatch signals;
    const InputFile input = ExamineInput(options.input.file);
    const TemporaryFolder temporary;
    const std::string extension = "." + NameOf(options.format);
    const auto target = OutputTarget::Open(options.output, extension, input, options.existing, temporary.Path());
    stdoutIsTaken = target->IsStandardOutput();
    std::optional<TemporaryFolder> sideFolder;
    WorkFiles files{target->FileToWrite(), std::nullopt};
    if (options.format == ConvertFormat::Obj && target->IsRegularFile()) {
        const Path parent = Path(options.output).parent_path();
        sideFolder.emplace(parent.empty() ? Path(".") : parent);
        files.sideFolder = sideFolder->Path();
    }
    CommandListener listener(options.quiet);
    ConvertSummary summary = RunWork(options, input, files, signals, listener);
    listener.EndProgress();
    SideFiles sideFiles(options.output, input, options.existing, temporary.Path());
    if (sideFolder)
        sideFiles.Deliver(sideFolder->Path(), summary.sideFiles, signals);
    summary.bytes = target->Deliver(signals);
    sideFiles.Keep();
    summary.warnings = std::move(listener.warnings);
    return summary;
}

} // namespace

void RunConvert(const ConvertOptions& options)
{
    const Clock::time_point start = Clock::now();
    bool stdoutIsTaken = false;
    ConvertSummary summary = ConvertToTarget(options, stdoutIsTaken);
    summary.input = options.input.file;
    summary.output = options.output;
    summary.outputFormat = NameOf(options.format);
    summary.seconds = std::chrono::duration<double>(Clock::now() - start).count();
    if (options.json || !options.quiet)
        PrintSummary(options.json ? JsonOf(summary) : TextOf(summary), options.json, stdoutIsTaken);
}

} // namespace Orvel::Cli
