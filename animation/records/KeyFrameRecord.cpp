// The record of a snapshot: the type and the data of every entity.

#include "animation/COrvelKeyFrame.h"
#include "animation/records/TypedKeyFrameData.h"
#include "platform/core/COrvelArchiveBase.h"

namespace Orvel
{

bool COrvelKeyFrame::WriteIntoArchive(COrvelArchiveBase& archive)
{
    auto count = static_cast<uint32>(keyFrameData.size());
    if (!archive.ReadWrite(count))
        return false;
    for (const auto& [id, data] : keyFrameData) {
        COrvelID entity = id;
        if (!archive.ReadWrite(entity) || !WriteTypedKeyFrameData(archive, *data))
            return false;
    }
    return true;
}

bool COrvelKeyFrame::ReadFromArchive(COrvelArchiveBase& archive)
{
    constexpr uint32 bytesPerEntry = 16; // the id and the type
    keyFrameData.clear();
    uint32 count = 0;
    if (!archive.ReadWriteCount(count, bytesPerEntry))
        return false;
    for (uint32 k = 0; k < count; ++k) {
        COrvelID entity;
        if (!archive.ReadWrite(entity))
            return false;
        COrvelPtr<COrvelKeyFrameData> data = ReadTypedKeyFrameData(archive, entity);
        if (!data)
            return false;
        keyFrameData.insert_or_assign(entity, std::move(data));
    }
    return true;
}

} // namespace Orvel
