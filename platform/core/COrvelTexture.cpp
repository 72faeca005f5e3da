#include "platform/core/COrvelTexture.h"

#include "platform/core/COrvelArchiveBase.h"

namespace Orvel
{

COrvelString COrvelTexture::FullFilename(bool eightBitForm) const
{
    return eightBitForm ? filename.GetAnsiFileName() : filename;
}

bool COrvelTexture::ArchiveReadWrite(COrvelArchiveBase& archive)
{
    return archive.ReadWrite(filename);
}

} // namespace Orvel
