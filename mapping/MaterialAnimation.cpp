#include "animation/COrvelKeyFrameDataMaterial.h"
#include "animation/COrvelKeyFrameManager.h"
#include "animation/COrvelSequence.h"
#include "animation/COrvelSequenceContainer.h"
#include "mapping/COrvelPRCMapper.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/prcfile/NullIndex.h"
#include "platform/prcfile/oPRCFile.h"
#include "prc/COrvelPRCHandler.h"

#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace Orvel
{

namespace
{

/// What is added to the PRC index of a frame's material: the two records count differently.
enum class Counting : uint32
{
    Indices = 0,
    Numbers = 1
};

struct Frames
{
    int first = 0;
    std::int64_t count = 0;
};

/// The material number of an animated entity; nothing when it is no material, or one that the file does not know.
std::optional<int> MaterialNumberOf(const COrvelID& id, const COrvelPRCHandler::MaterialNumbers& numbers)
{
    auto* const material = dynamic_cast<COrvelMaterial*>(id.Entity());
    if (!material)
        return std::nullopt;
    const auto found = numbers.find(material);
    if (found == numbers.end() || found->second == prc::nullIndex)
        return std::nullopt;
    return static_cast<int>(found->second);
}

/// Adds the material of each frame to the file, up to the first frame that has none.
std::vector<int> SampleMaterial(COrvelPRCHandler& converter, COrvelKeyFrameManager& timeline, const COrvelID& id,
                                Frames frames, Counting counting, prc::oPRCFile& file)
{
    std::vector<int> values;
    for (std::int64_t k = 0; k < frames.count; ++k) {
        const auto data = timeline.KeyFrameDataAtFrame(id, static_cast<int>(frames.first + k));
        const auto* const materialData = dynamic_cast<const COrvelKeyFrameDataMaterial*>(data.Get());
        if (!materialData || !materialData->Material())
            break;
        uint32 index = 0;
        if (!converter.AddKeyFrameMaterial(materialData->Material(), index, file) || index == prc::nullIndex)
            break;
        values.push_back(static_cast<int>(index + static_cast<uint32>(counting)));
    }
    return values;
}

/// From the start of the material's first key frame to the end of its last one, gaps included.
Frames SpanInSequence(const COrvelSequence& sequence, const COrvelID& id)
{
    std::vector<int> frames;
    sequence.ListKeyFrameNumbers(id, frames);
    if (frames.empty())
        return {};
    return {frames.front(), std::int64_t{frames.back()} - frames.front() + 1};
}

COrvelPRCMapper::MaterialFrames SampleSequence(COrvelPRCHandler& converter, COrvelSequence& sequence,
                                               prc::oPRCFile& file)
{
    COrvelPRCMapper::MaterialFrames animation;
    std::vector<COrvelID> ids;
    sequence.ListAnimatedMaterialIDs(ids);
    for (const COrvelID& id : ids) {
        const std::optional<int> number = MaterialNumberOf(id, *converter.materialNumbers);
        if (!number)
            continue;
        std::vector<int> indices =
            SampleMaterial(converter, sequence, id, SpanInSequence(sequence, id), Counting::Indices, file);
        if (!indices.empty())
            animation[*number] = std::move(indices);
    }
    return animation;
}

} // namespace

void COrvelPRCHandler::ExtractMaterialAnimation(prc::oPRCFile& file)
{
    COrvelKeyFrameManager& manager = *COrvelKeyFrameManager::Instance();
    if (!manager.HasKeyFrames())
        return;
    const Frames timeline{0, std::int64_t{manager.LastFrame()} + 1};
    std::vector<COrvelID> ids;
    manager.ListAnimatedMaterialIDs(ids);
    for (const COrvelID& id : ids) {
        const std::optional<int> number = MaterialNumberOf(id, *materialNumbers);
        if (!number)
            continue;
        std::vector<int> numbers = SampleMaterial(*this, manager, id, timeline, Counting::Numbers, file);
        if (!numbers.empty())
            mapper->AddMapping(*number, numbers);
    }
}

void COrvelPRCHandler::ExtractMaterialSequenceAnimation(prc::oPRCFile& file)
{
    std::vector<COrvelSequence*> sequences;
    COrvelKeyFrameManager::Instance()->SequenceContainer()->ListSequences(sequences, true, false);
    for (COrvelSequence* sequence : sequences) {
        const COrvelPRCMapper::MaterialFrames animation = SampleSequence(*this, *sequence, file);
        // A host may know the sequence by either.
        mapper->AddMaterialSequenceAnimationMapping(sequence->UUID().ToString(), animation);
        mapper->AddMaterialSequenceAnimationMapping(sequence->Name(), animation);
    }
}

} // namespace Orvel
