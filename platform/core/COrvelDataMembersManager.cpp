#include "platform/core/COrvelDataMembersManager.h"

#include "platform/core/COrvelArchiveBase.h"

#include <utility>

namespace Orvel
{

COrvelString& COrvelDataMembersManager::Name()
{
    return storedName;
}

void COrvelDataMembersManager::SetName(COrvelString newName)
{
    storedName = std::move(newName);
}

COrvelString COrvelDataMembersManager::DisplayName()
{
    return storedDisplayName.IsEmpty() ? Name() : storedDisplayName;
}

void COrvelDataMembersManager::SetDisplayName(COrvelString newDisplayName)
{
    storedDisplayName = std::move(newDisplayName);
}

void* COrvelDataMembersManager::DataMemberSearch(int index, int& type, COrvelString& name, bool)
{
    if (index == countCommand) {
        type = 1;
        return nullptr;
    }
    if (index != 0)
        return nullptr;
    type = eDataMemberType_Text;
    name = "Name";
    return &storedName;
}

void* COrvelDataMembersManager::CreateValue(int, const COrvelString&)
{
    return nullptr;
}

bool COrvelDataMembersManager::ReadFromArchive(COrvelArchiveBase& archive)
{
    return archive.ReadWrite(storedName) && archive.ReadWrite(storedDisplayName);
}

bool COrvelDataMembersManager::WriteIntoArchive(COrvelArchiveBase& archive)
{
    return archive.ReadWrite(storedName) && archive.ReadWrite(storedDisplayName);
}

} // namespace Orvel
