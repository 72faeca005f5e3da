// The record of a timeline: its name, the data of every entity, aliases, frames and the counts of data.

#include "animation/COrvelKeyFrameManager.h"
#include "animation/records/LayoutVersions.h"
#include "animation/records/TypedKeyFrameData.h"
#include "platform/core/COrvelArchiveBase.h"

#include <iterator>
#include <limits>

namespace Orvel
{

namespace
{

constexpr uint32 bytesPerID = 12;

/// Writes the number of entries for entities, then each of them. The default id, which names none, is the smallest of
/// all.
template <class Map, class WriteEntry>
bool WriteEntries(COrvelArchiveBase& archive, Map& map, WriteEntry writeEntry)
{
    const auto first = map.upper_bound(COrvelID());
    auto count = static_cast<uint32>(std::distance(first, map.end()));
    if (!archive.ReadWrite(count))
        return false;
    for (auto entry = first; entry != map.end(); ++entry) {
        COrvelID id = entry->first;
        if (!archive.ReadWrite(id) || !writeEntry(entry->second))
            return false;
    }
    return true;
}

/// Reads a number of entries, then the id of each, and has the rest read.
template <class ReadEntry>
bool ReadEntries(COrvelArchiveBase& archive, uint32 bytesPerEntry, ReadEntry readEntry)
{
    uint32 count = 0;
    if (!archive.ReadWriteCount(count, bytesPerEntry))
        return false;
    for (uint32 k = 0; k < count; ++k) {
        COrvelID id;
        if (!archive.ReadWrite(id) || !readEntry(id))
            return false;
    }
    return true;
}

bool HasApplicableMarks(const COrvelArchiveBase& archive)
{
    return archive.Version() >= LayoutVersion::applicableMark;
}

bool WriteEntityData(COrvelArchiveBase& archive, const KeyFrameDataByFrame& dataByFrame)
{
    auto count = static_cast<uint32>(dataByFrame.size());
    if (!archive.ReadWrite(count))
        return false;
    for (const auto& [frame, data] : dataByFrame) {
        if (HasApplicableMarks(archive)) {
            bool isApplicable = data->IsApplicable();
            if (!archive.ReadWrite(isApplicable))
                return false;
            if (!isApplicable)
                continue;
        }
        int start = data->StartFrame();
        if (!archive.ReadWrite(start) || !WriteTypedKeyFrameData(archive, *data))
            return false;
    }
    return true;
}

} // namespace

/// Numbers the data of each entity without holes while they are written: what is not written leaves no trace in the
/// numbers of the rest.
class COrvelKeyFrameManager::DenseNumbering
{
public:
    explicit DenseNumbering(COrvelKeyFrameManager& newManager)
        : manager(newManager)
    {
        for (const auto& [id, dataByFrame] : manager.keyFrameDataByEntity) {
            if (const auto count = manager.dataCountByEntity.find(id); count != manager.dataCountByEntity.end())
                manager.savedCounts.insert(*count);
            manager.dataCountByEntity[id] = Renumber(dataByFrame);
        }
    }
    DenseNumbering(const DenseNumbering&) = delete;
    DenseNumbering& operator=(const DenseNumbering&) = delete;
    ~DenseNumbering()
    {
        for (const auto& [data, number] : manager.savedNumbers)
            data->SetSequenceNumber(number);
        for (const auto& [id, dataByFrame] : manager.keyFrameDataByEntity)
            if (!manager.savedCounts.contains(id))
                manager.dataCountByEntity.erase(id);
        for (const auto& [id, count] : manager.savedCounts)
            manager.dataCountByEntity.find(id)->second = count;
        manager.savedNumbers.clear();
        manager.savedCounts.clear();
    }

private:
    /// Data that share a number go on sharing one. @return the highest number.
    int Renumber(const KeyFrameDataByFrame& dataByFrame)
    {
        std::map<int, int> newNumbers;
        for (const auto& [start, data] : dataByFrame)
            if (data->IsApplicable())
                newNumbers.emplace(data->SequenceNumber(), 0);
        int highest = 0;
        for (auto& [number, newNumber] : newNumbers)
            newNumber = ++highest;
        for (const auto& [start, data] : dataByFrame) {
            if (!data->IsApplicable())
                continue;
            const int number = data->SequenceNumber();
            if (manager.savedNumbers.emplace(data.Get(), number).second)
                data->SetSequenceNumber(newNumbers[number]);
        }
        return highest;
    }

    COrvelKeyFrameManager& manager;
};

bool COrvelKeyFrameManager::ArchiveReadWrite(COrvelArchiveBase& archive)
{
    if (!archive.IsReaderArchive())
        return WriteRecord(archive);
    if (!ReadRecord(archive))
        return false;
    ConvertOldLayouts();
    return true;
}

bool COrvelKeyFrameManager::WriteRecord(COrvelArchiveBase& archive)
{
    const DenseNumbering numbering(*this);
    if (archive.Version() >= LayoutVersion::managerName && !COrvelArchivable::ArchiveReadWrite(archive))
        return false;
    const auto writeData = [&archive](const KeyFrameDataByFrame& data) { return WriteEntityData(archive, data); };
    const auto writeAlias = [&archive](COrvelID animated) { return archive.ReadWrite(animated); };
    const auto writeCount = [&archive](int number) {
        auto count = static_cast<uint32>(number);
        return archive.ReadWrite(count);
    };
    return WriteEntries(archive, keyFrameDataByEntity, writeData) && WriteEntries(archive, entityAliases, writeAlias) &&
           archive.ReadWrite(currentFrame, firstFrame, lastFrame) &&
           (archive.Version() < LayoutVersion::sequenceNumber || WriteEntries(archive, dataCountByEntity, writeCount));
}

bool COrvelKeyFrameManager::ReadRecord(COrvelArchiveBase& archive)
{
    const COrvelIDReadingScope readingIDs;
    readIDs.clear();
    filedFrames.clear();
    if (archive.Version() >= LayoutVersion::managerName && !COrvelArchivable::ArchiveReadWrite(archive))
        return false;
    const auto readData = [&](const COrvelID& id) { return ReadEntityData(archive, id); };
    const auto readAlias = [&](const COrvelID& target) {
        COrvelID animated;
        const bool isRead = archive.ReadWrite(animated);
        if (isRead)
            entityAliases.insert_or_assign(target, animated);
        return isRead;
    };
    const auto readCount = [&](const COrvelID& id) {
        // Data go on being counted from here.
        constexpr uint32 largestCount = std::numeric_limits<int>::max() / 2;
        uint32 count = 0;
        const bool isRead = archive.ReadWrite(count) && count <= largestCount;
        if (isRead)
            dataCountByEntity.insert_or_assign(id, static_cast<int>(count));
        return isRead;
    };
    constexpr uint32 bytesPerCount = 4;
    return ReadEntries(archive, bytesPerID + bytesPerCount, readData) &&
           ReadEntries(archive, bytesPerID + bytesPerID, readAlias) &&
           archive.ReadWrite(currentFrame, firstFrame, lastFrame) &&
           (archive.Version() < LayoutVersion::sequenceNumber ||
            ReadEntries(archive, bytesPerID + bytesPerCount, readCount));
}

bool COrvelKeyFrameManager::ReadEntityData(COrvelArchiveBase& archive, const COrvelID& id)
{
    const uint32 bytesPerData = HasApplicableMarks(archive) ? 1 : 8; // the mark; or the key and the type
    uint32 count = 0;
    if (!archive.ReadWriteCount(count, bytesPerData))
        return false;
    readIDs.insert(id);
    for (uint32 k = 0; k < count; ++k) {
        bool isApplicable = true;
        if (HasApplicableMarks(archive) && !archive.ReadWrite(isApplicable))
            return false;
        if (!isApplicable)
            continue;
        int start = 0;
        if (!archive.ReadWrite(start))
            return false;
        const COrvelPtr<COrvelKeyFrameData> data = ReadTypedKeyFrameData(archive, id);
        if (!data)
            return false;
        keyFrameDataByEntity[id].insert_or_assign(start, data);
    }
    return true;
}

} // namespace Orvel
