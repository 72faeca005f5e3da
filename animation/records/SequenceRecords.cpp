// The records of a sequence, of the groups of sequences, and of the container of both.

#include "animation/COrvelSequence.h"
#include "animation/COrvelSequenceContainer.h"
#include "animation/records/LayoutVersions.h"
#include "platform/core/COrvelArchiveBase.h"

#include <utility>

namespace Orvel
{

namespace
{

/// Whether the records of sequences have any content in this archive.
bool HasSequenceRecords(const COrvelArchiveBase& archive)
{
    return archive.Version() >= LayoutVersion::sequence && archive.HasExtendedRecords();
}

bool HasGroupRecords(const COrvelArchiveBase& archive)
{
    return archive.Version() >= LayoutVersion::sequenceGroup && archive.HasExtendedRecords();
}

/// Reads the number of records that follow. Where records have no content there is nothing to be made of them: none.
bool ReadRecordCount(COrvelArchiveBase& archive, bool haveContent, uint32 bytesPerRecord, uint32& count)
{
    if (haveContent)
        return archive.ReadWriteCount(count, bytesPerRecord);
    uint32 withoutContent = 0;
    return archive.ReadWrite(withoutContent);
}

} // namespace

// --- sequence

/// What a sequence stores behind its timeline.
struct COrvelSequence::Settings
{
    bool ArchiveReadWrite(COrvelArchiveBase& archive)
    {
        const int version = archive.Version();
        return archive.ReadWrite(id) &&
               (version < LayoutVersion::sequenceGroup || archive.ReadWrite(orderIndex, groupID)) &&
               (version < LayoutVersion::previewImage || archive.ReadWrite(previewImage)) &&
               (version < LayoutVersion::duration || archive.ReadWrite(duration));
    }

    COrvelUUID id;
    int orderIndex;
    COrvelUUID groupID;
    COrvelTexture previewImage;
    double duration;
};

bool COrvelSequence::ArchiveReadWrite(COrvelArchiveBase& archive)
{
    if (!HasSequenceRecords(archive))
        return true;
    Settings settings{sequenceID, orderIndex, groupID, previewImage, duration};
    if (!COrvelKeyFrameManager::ArchiveReadWrite(archive) || !archive.ReadWrite(settings))
        return false;
    if (archive.IsReaderArchive())
        TakeOver(std::move(settings));
    return true;
}

void COrvelSequence::TakeOver(Settings settings)
{
    // The container and the group know the sequence by its id, which changes.
    LeaveContainer();
    sequenceID = settings.id;
    orderIndex = settings.orderIndex;
    groupID = settings.groupID;
    COrvelString filename = settings.previewImage.Filename();
    filename.ReplaceSlashWithSystemSlash();
    previewImage = std::move(settings.previewImage);
    previewImage.SetFilename(std::move(filename));
    duration = settings.duration;
    EnterContainer();
}

// --- group

bool COrvelSequenceGroup::ArchiveReadWrite(COrvelArchiveBase& archive)
{
    constexpr uint32 bytesPerMember = 16;
    if (!HasGroupRecords(archive))
        return true;
    auto count = static_cast<uint32>(members.size());
    if (!archive.ReadWrite(id, name, orderIndex) || !archive.ReadWriteCount(count, bytesPerMember))
        return false;
    if (!archive.IsReaderArchive()) {
        for (COrvelUUID member : members)
            if (!archive.ReadWrite(member))
                return false;
        return true;
    }
    members.clear();
    for (uint32 k = 0; k < count; ++k) {
        COrvelUUID member;
        if (!archive.ReadWrite(member))
            return false;
        members.insert(member);
    }
    return true;
}

// --- container

bool COrvelSequenceContainer::WriteIntoArchive(COrvelArchiveBase& archive)
{
    std::vector<COrvelSequence*> saved;
    for (const auto& [id, sequence] : sequences)
        if (!sequence->IsTemporary())
            saved.push_back(sequence);
    auto count = static_cast<uint32>(saved.size());
    if (!archive.ReadWrite(count))
        return false;
    for (COrvelSequence* const sequence : saved)
        if (!archive.ReadWrite(*sequence))
            return false;
    return archive.Version() < LayoutVersion::sequenceGroup || WriteGroups(archive);
}

bool COrvelSequenceContainer::WriteGroups(COrvelArchiveBase& archive)
{
    std::vector<COrvelSequenceGroup*> saved;
    for (const auto& [id, group] : groups)
        if (!group->IsTemporary())
            saved.push_back(group.get());
    auto count = static_cast<uint32>(saved.size());
    if (!archive.ReadWrite(count))
        return false;
    for (COrvelSequenceGroup* const group : saved)
        if (!archive.ReadWrite(*group))
            return false;
    COrvelUUID selected = SelectedGroup()->ID();
    return archive.ReadWrite(*currentGroup, selected);
}

bool COrvelSequenceContainer::ReadFromArchive(COrvelArchiveBase& archive)
{
    const COrvelIDReadingScope readingIDs;
    hostSequences.clear();
    text = currentGroup->Name();
    return ReadSequences(archive) && (archive.Version() < LayoutVersion::sequenceGroup || ReadGroups(archive));
}

bool COrvelSequenceContainer::ReadSequences(COrvelArchiveBase& archive)
{
    constexpr uint32 bytesPerSequence = 48; // without name, data and settings
    uint32 count = 0;
    if (!ReadRecordCount(archive, HasSequenceRecords(archive), bytesPerSequence, count))
        return false;
    std::vector<std::unique_ptr<COrvelSequence>> read;
    bool isComplete = true;
    for (uint32 k = 0; k < count && isComplete; ++k) {
        read.push_back(std::unique_ptr<COrvelSequence>(new COrvelSequence()));
        isComplete = archive.ReadWrite(*read.back());
    }
    // Whoever uses the container owns what it lists. One that could not be read, or whose id another one of the same
    // archive has taken, is listed nowhere.
    for (std::unique_ptr<COrvelSequence>& sequence : read)
        if (FindSequence(sequence->UUID()) == sequence.get())
            static_cast<void>(sequence.release());
    return isComplete;
}

bool COrvelSequenceContainer::ReadGroups(COrvelArchiveBase& archive)
{
    constexpr uint32 bytesPerGroup = 28; // without name and members
    uint32 count = 0;
    if (!ReadRecordCount(archive, HasGroupRecords(archive), bytesPerGroup, count))
        return false;
    for (uint32 k = 0; k < count; ++k) {
        auto group = std::make_unique<COrvelSequenceGroup>();
        if (!archive.ReadWrite(*group))
            return false;
        // Without an id it could not be told from "Default".
        if (!group->ID().IsValid())
            continue;
        std::unique_ptr<COrvelSequenceGroup>& place = groups[group->ID()];
        // Those who hold a group keep it.
        if (place)
            *place = std::move(*group);
        else
            place = std::move(group);
    }
    return archive.ReadWrite(*currentGroup, selectedGroupID);
}

} // namespace Orvel
