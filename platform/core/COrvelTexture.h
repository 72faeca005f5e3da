#pragma once

#include "platform/core/COrvelString.h"
#include "platform/core/Export.h"
#include "platform/core/enumTextureType.h"

#include <utility>

namespace Orvel
{

class COrvelArchiveBase;

/// A reference to a picture file.
class ORVEL_CORE_API COrvelTexture
{
public:
    /// An empty texture.
    COrvelTexture() = default;
    explicit COrvelTexture(COrvelString newFilename)
        : filename(std::move(newFilename))
    {}

    /// True without a file name.
    bool IsEmpty() const { return filename.IsEmpty(); }
    /// Path to open.
    ///
    /// @param eightBitForm true: a form of the path that 8-bit file functions can open.
    COrvelString FullFilename(bool eightBitForm) const;
    /// The file name as it was given.
    const COrvelString& Filename() const { return filename; }
    void SetFilename(COrvelString newFilename) { filename = std::move(newFilename); }

    bool operator==(const COrvelTexture&) const = default;
    /// The file name.
    bool ArchiveReadWrite(COrvelArchiveBase& archive);

private:
    COrvelString filename;
};

} // namespace Orvel
