#include "animation/COrvelAnimationCollapsingGroupGuidToCaptionMapper.h"
#include "animation/COrvelKeyFrame.h"
#include "animation/COrvelSequence.h"
#include "animation/COrvelSequenceContainer.h"
#include "platform/core/COrvelArchiveReader.h"
#include "platform/core/COrvelArchiveWriter.h"
#include "platform/core/COrvelDocumentsContainer.h"
#include "tests/animation/RandomTimeline.h"

#include <cstdlib>
#include <memory>

/// Reads archives of animation that the fuzzer makes up, of every version, evaluates what was read and writes it.
///
/// The bytes are a whole archive with its header, then a timeline, a snapshot, captions and the container of sequences.
namespace
{

using namespace Orvel;

void Require(bool condition)
{
    if (!condition)
        std::abort();
}

void Use(COrvelKeyFrameManager& timeline)
{
    std::vector<COrvelID> ids;
    timeline.ListAnimatedIDs(ids);
    for (const COrvelID& id : ids)
        for (const int frame : {-1, 0, 7, 1000})
            timeline.KeyFrameDataAtFrame(id, frame);
    timeline.IsSeamlessLoop();
    KeyFrameDataList all;
    timeline.ListAllKeyFrameData(all);
    COrvelKeyFrameManager::FrameLength(all);
}

std::vector<COrvelSequence*> Sequences()
{
    std::vector<COrvelSequence*> sequences;
    COrvelSequenceContainer::Instance()->ListSequences(sequences, false, false);
    return sequences;
}

std::vector<std::uint8_t> Written()
{
    COrvelArchiveWriter writer;
    Require(writer.ReadWrite(*COrvelKeyFrameManager::Instance()));
    return writer.Bytes();
}

void Forget()
{
    COrvelKeyFrameManager::SetInstance(new COrvelKeyFrameManager);
    for (const COrvelSequence* const sequence : Sequences())
        delete sequence;
    COrvelSequenceContainer::Instance()->Reset();
}

/// What was read and written anew can be read again, whatever it was.
void CheckThatWrittenIsReadable()
{
    const std::vector<std::uint8_t> first = Written();
    COrvelKeyFrameManager::SetInstance(new COrvelKeyFrameManager);
    COrvelArchiveReader reader(first);
    COrvelDocumentsContainer::DocumentsContainer()->SetLastReadDocumentVersion(COrvelArchiveBase::newestVersion);
    Require(reader.ReadWrite(*COrvelKeyFrameManager::Instance()) && reader.IsAtEnd());
    // Data whose keys disagree with their start frames may have met.
    Require(Written().size() <= first.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // The entities that the seeds name.
    static const RandomTimeline* const scene = new RandomTimeline;
    static_cast<void>(scene);
    COrvelArchiveReader archive(std::span(data, size));
    if (!archive.ReadHeader())
        return 0;
    COrvelKeyFrame snapshot;
    COrvelAnimationCollapsingGroupGuidToCaptionMapper captions;
    const bool isTimelineRead = archive.ReadWrite(*COrvelKeyFrameManager::Instance());
    static_cast<void>(isTimelineRead && snapshot.ReadFromArchive(archive) && archive.ReadWrite(captions) &&
                      COrvelSequenceContainer::Instance()->ReadFromArchive(archive));
    Require(!COrvelID::IsReadingMode());
    Use(*COrvelKeyFrameManager::Instance());
    for (COrvelSequence* const sequence : Sequences())
        Use(*sequence);
    if (isTimelineRead)
        CheckThatWrittenIsReadable();
    Forget();
    return 0;
}
