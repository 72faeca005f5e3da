#include "platform/core/COrvelID.h"

#include "platform/core/COrvelArchiveBase.h"
#include "platform/core/COrvelDocumentsContainer.h"

#include <bit>

namespace Orvel
{

namespace
{

int readingDepth = 0;

} // namespace

bool COrvelID::ArchiveReadWrite(COrvelArchiveBase& archive)
{
    COrvelID id = *this;
    if (!archive.ReadWrite(id.entityType, id.number))
        return false;
    if (!archive.IsReaderArchive())
        return true;
    const bool isEntity = id.entityType > 0 && std::has_single_bit(static_cast<unsigned>(id.entityType));
    if (!isEntity && !id.IsDefault())
        return false;
    *this = IsReadingMode() ? COrvelDocumentsContainer::DocumentsContainer()->TranslatedID(id) : id;
    return true;
}

void COrvelID::SetReadingMode(bool on)
{
    if (on)
        ++readingDepth;
    else if (readingDepth > 0)
        --readingDepth;
}

bool COrvelID::IsReadingMode()
{
    return readingDepth > 0;
}

} // namespace Orvel
