#include "tool/cli/RenderCommand.h"

#include "tool/cli/CommandListener.h"
#include "tool/cli/Errors.h"
#include "tool/cli/InputFile.h"
#include "tool/cli/PicturePng.h"
#include "tool/cli/ShownModel.h"
#include "tool/cli/SignalWatch.h"
#include "tool/cli/Supervisor.h"
#include "tool/cli/TemporaryFolder.h"
#include "tool/cli/Text.h"
#include "tool/render/Renderer.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <memory>
#include <system_error>
#include <vector>

namespace Orvel::Cli
{

namespace
{

constexpr const char* Extension = ".png";

void WriteFile(const std::vector<std::uint8_t>& bytes, const std::string& file, const std::string& nameForUser)
{
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream)
        throw CannotWrite(nameForUser, std::generic_category().message(errno));
}

/// The work of the supervised process.
nlohmann::json TakePicture(const RenderOptions& options, const Import::LoadOptions& load, const std::string& file,
                           const WorkReporter& reporter)
{
    const ShownModel shown = ReadShownModel(options.input, load, reporter);
    const double aspect = static_cast<double>(options.width) / options.height;
    const Views::View view = ViewNamed(options.view, aspect, shown);
    reporter.Stage("taking the picture");
    Render::PictureOptions picture;
    picture.width = options.width;
    picture.height = options.height;
    picture.background = options.background;
    picture.up = shown.orientation.up;
    picture.floor = options.shadow;
    picture.samples = options.samples;
    const Render::Renderer renderer(shown.scene);
    const std::vector<std::uint8_t> png = EncodePng(renderer.Render(view, picture));
    reporter.Stage("writing the picture");
    WriteFile(png, file, options.output);
    return nlohmann::json::object();
}

/// What is usual for the file, and more for a large picture.
WorkLimits LimitsOf(const RenderOptions& options, const InputFile& input)
{
    WorkLimits limits = LimitsFor(options.limits, input.size);
    const std::uint64_t pixels = std::uint64_t{options.width} * options.height;
    if (!options.limits.time)
        limits.time += std::chrono::milliseconds(pixels * (10 + 4 * options.samples) / 1000);
    if (!options.limits.memoryInBytes)
        limits.memoryInBytes += 16 * pixels;
    return limits;
}

} // namespace

void RunRender(const RenderOptions& options)
{
    const SignalWatch signals;
    const InputFile input = ExamineInput(options.input.file);
    const TemporaryFolder temporary;
    const auto target = OutputTarget::Open(options.output, Extension, input, options.existing, temporary.Path());
    Import::LoadOptions load = options.load;
    load.temporaryFolder = temporary.Path();
    load.largestTextureSide = std::clamp(std::max(options.width, options.height), 1024U, 4096U);
    CommandListener listener(options.quiet);
    const Work work = [&](const WorkReporter& reporter) {
        return TakePicture(options, load, target->FileToWrite(), reporter);
    };
    try {
        static_cast<void>(RunSupervised(work, LimitsOf(options, input), signals, listener));
    } catch (const Failure& failure) {
        throw Failure("cannot render " + Quoted(options.input.file) + ": " + failure.what());
    }
    listener.EndProgress();
    static_cast<void>(target->Deliver(signals));
}

} // namespace Orvel::Cli
