#pragma once

#include "platform/core/Export.h"

#include <string>

namespace Orvel
{

/// What the system's 8-bit file functions take. It decides which names must be written by a detour: under another name
/// first, renamed afterwards.
enum class FileNameEncoding
{
    Utf8, ///< every name can be opened as it is
    Ascii ///< only names made of U+0001 to U+007F can
};

/// Utf8, except on Windows: of the code pages in use there, only the ASCII half is sure.
[[nodiscard]] ORVEL_CORE_API FileNameEncoding EightBitFileNameEncoding();

/// For the whole process; Ascii brings the detour to systems that would not need it.
ORVEL_CORE_API void SetEightBitFileNameEncoding(FileNameEncoding encoding);

/// An ASCII name of an existing file or folder, the same for every name of the same one; valid until the process ends.
///
/// @param utf8 the existing name, absolute or relative to the working directory; without a trailing separator.
/// @return empty when nothing of that name exists or the system has no such name for it.
[[nodiscard]] ORVEL_CORE_API std::string AsciiFileName(const std::string& utf8);

} // namespace Orvel
