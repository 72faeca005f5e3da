// What every key frame data stores: entities, range, easing, number, collapsing group.

#include "animation/COrvelKeyFrameData.h"
#include "animation/records/LayoutVersions.h"
#include "platform/core/COrvelArchiveBase.h"
#include "platform/core/COrvelEntity.h"

namespace Orvel
{

namespace
{

/// The GUID under which the entity lives that a file knows by `stored`; `otherwise` when there is none.
COrvelUUID LivingGuid(const COrvelUUID& stored, const COrvelUUID& otherwise)
{
    const COrvelUUID replacement = COrvelDocumentsContainer::DocumentsContainer()->ReplacedUUID(stored);
    for (const COrvelUUID& guid : {stored, replacement})
        if (const COrvelEntity* const entity = COrvelEntity::GetEntityByGuid(guid))
            return entity->GetGuid();
    return otherwise;
}

} // namespace

bool COrvelKeyFrameData::WriteIntoArchive(COrvelArchiveBase& archive)
{
    return archive.ReadWrite(targetEntityID, animatedEntityID, startFrame, endFrame, workingFrame) &&
           archive.ReadWrite(easeIn, easeOut, sequenceNumber, ownerGuid, collapsingGroupID);
}

bool COrvelKeyFrameData::ReadFromArchive(COrvelArchiveBase& archive)
{
    const int version = DocumentVersion();
    if (!archive.ReadWrite(targetEntityID, animatedEntityID, startFrame, endFrame, workingFrame))
        return false;
    if (startFrame == endFrame)
        SpanConstantSpeed();
    const bool hasEasing =
        version >= LayoutVersion::easingModes ? archive.ReadWrite(easeIn, easeOut) : archive.ReadWrite(legacyEasing);
    if (!hasEasing)
        return false;
    if (version >= LayoutVersion::sequenceNumber && !archive.ReadWrite(sequenceNumber))
        return false;
    if (version < LayoutVersion::collapsingGroup)
        return true;
    COrvelUUID owner;
    if (!archive.ReadWrite(owner, collapsingGroupID))
        return false;
    ownerGuid = LivingGuid(owner, ownerGuid);
    return true;
}

bool COrvelKeyFrameData::ArchiveConstantSpeed(COrvelArchiveBase& archive)
{
    return archive.ReadWrite(constantSpeedStartFrame, constantSpeedEndFrame);
}

bool COrvelKeyFrameData::WriteMotion(COrvelArchiveBase& archive)
{
    return archive.Version() < LayoutVersion::easingModes || ArchiveConstantSpeed(archive);
}

bool COrvelKeyFrameData::ReadMotion(COrvelArchiveBase& archive)
{
    if (DocumentVersion() >= LayoutVersion::easingModes)
        return ArchiveConstantSpeed(archive);
    SpanConstantSpeed();
    easeIn = 0;
    easeOut = 0;
    return true;
}

} // namespace Orvel
