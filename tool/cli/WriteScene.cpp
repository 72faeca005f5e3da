#include "tool/cli/WriteScene.h"

#include "platform/core/COrvelCamera.h"
#include "tool/cli/Errors.h"
#include "tool/cli/OutputTarget.h"
#include "writer/COrvelPRCWriter.h"

#include <cerrno>
#include <fstream>
#include <system_error>

namespace Orvel::Cli
{

namespace
{

Record::RunFacts FactsOf(const Animate::AnimatedScene& animated)
{
    Record::RunFacts facts;
    facts.clip = animated.timelineClip;
    if (animated.camera)
        facts.camera = animated.camera->Name().toStdString();
    facts.sceneStates = animated.sceneStateNames;
    facts.framesPerSecond = animated.framesPerSecond;
    facts.lastFrame = animated.manager->LastFrame();
    return facts;
}

/// @param animated, mapper of the animated run; null for the plain one.
void WriteOutput(COrvelPRCWriter& writer, COrvelDocument& document, Animate::AnimatedScene* animated,
                 COrvelPRCMapper* mapper, const std::string& prcFile, const ExportOptions& options)
{
    const COrvelString file(prcFile.c_str());
    bool written = false;
    try {
        if (animated) {
            writer.SetPRCMapper(mapper);
            written = writer.ExportToMemory(&document, file, nullptr, nullptr, &animated->sceneStates);
        } else {
            written = writer.Export(&document, file, nullptr, nullptr, nullptr, nullptr, COrvelUnit());
        }
    } catch (const std::system_error& error) {
        // The name of the file would tell the user nothing: it is the one that takes the output's place meanwhile.
        throw CannotWrite(options.output, error.code().message());
    }
    if (!written)
        throw Failure("the scene could not be written");
}

} // namespace

std::unique_ptr<AnimatedRun> WriteScene(COrvelDocument& document, Animate::AnimatedScene* animated,
                                        const std::string& prcFile, const ExportOptions& options)
{
    COrvelPRCWriter writer;
    writer.SetMaximumTextureSize(options.maximumTextureSize);
    if (!animated) {
        WriteOutput(writer, document, nullptr, nullptr, prcFile, options);
        return nullptr;
    }
    auto run = std::make_unique<AnimatedRun>();
    run->facts = FactsOf(*animated);
    writer.SetKeyFrameManager(animated->manager.release());
    WriteOutput(writer, document, animated, &run->mapper, prcFile, options);
    return run;
}

void WriteRecordFile(const AnimatedRun& run, const std::string& file, const ExportOptions& options)
{
    std::ofstream out(file, std::ios::binary);
    Record::WriteRecord(run.mapper, run.facts, out);
    out.close();
    if (!out)
        throw CannotWrite(options.record, std::generic_category().message(errno));
}

} // namespace Orvel::Cli
