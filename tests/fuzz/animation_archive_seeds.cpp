// Makes seeds for animation_archive_fuzz in a folder: a timeline for each type of key frame data, with a sequence.

#include "animation/COrvelAnimationCollapsingGroupGuidToCaptionMapper.h"
#include "animation/COrvelKeyFrame.h"
#include "animation/COrvelSequence.h"
#include "animation/COrvelSequenceContainer.h"
#include "platform/core/COrvelArchiveWriter.h"
#include "tests/animation/RandomTimeline.h"

#include <string>

namespace
{

using namespace Orvel;

bool WriteSeed(RandomTimeline& scene, int type, const std::string& folder)
{
    COrvelUUID group;
    group.Generate();
    COrvelAnimationCollapsingGroupGuidToCaptionMapper captions;
    captions.AddCaption(group, "moves");
    auto* const timeline = new COrvelKeyFrameManager;
    COrvelKeyFrameManager::SetInstance(timeline);
    scene.Fill(*timeline, type, 2, group);
    const COrvelPtr<COrvelSequence> sequence = COrvelSequence::Create();
    scene.Fill(*sequence, type, 2, group);
    COrvelSequenceContainer* const container = COrvelSequenceContainer::Instance();
    container->CreateGroup()->AddSequence(sequence.Get());
    COrvelKeyFrame snapshot = timeline->KeyFrameAtFrame(15);
    COrvelArchiveWriter archive((folder + "/type" + std::to_string(type) + ".archive").c_str());
    const bool isWritten = archive.WriteHeader() && archive.ReadWrite(*timeline) &&
                           snapshot.WriteIntoArchive(archive) && archive.ReadWrite(captions) &&
                           container->WriteIntoArchive(archive) && archive.Commit();
    container->Reset();
    return isWritten;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
        return 2;
    COrvelUUID::SeedGenerator(1);
    RandomTimeline scene;
    for (int type = 0; type < RandomTimeline::typeCount; ++type)
        if (!WriteSeed(scene, type, argv[1]))
            return 1;
    return 0;
}
