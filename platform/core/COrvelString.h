#pragma once

#include "platform/core/Export.h"

#include <compare>
#include <cstddef>
#include <string>

namespace Orvel
{

/// Unicode text: names, file paths, keys of maps.
///
/// The text is held as UTF-8, so the 8-bit form costs nothing; the wide form is made when it is first asked for. No
/// conversion looks at the locale. Bytes that are not UTF-8 (a file name of another encoding) are kept as they are, so
/// that such a file still opens; the wide form shows U+FFFD in their place.
class ORVEL_CORE_API COrvelString
{
public:
    COrvelString() = default;

    /// @param utf8 NUL-terminated UTF-8; null counts as empty.
    COrvelString(const char* utf8);

    /// @param wide NUL-terminated, UTF-32 where wchar_t has 32 bits, else UTF-16; null counts as empty.
    COrvelString(const wchar_t* wide);

    /// @param utf8 may hold NUL characters; what follows one is seen by toStdString and the comparisons only.
    explicit COrvelString(std::string utf8);

    /// Decimal text of `number`, never a length or a character code.
    explicit COrvelString(int number);

    // A stray character, flag or null constant is not meant as a number or a text.
    COrvelString(char) = delete;
    COrvelString(wchar_t) = delete;
    COrvelString(bool) = delete;
    COrvelString(std::nullptr_t) = delete;

    /// Decimal text without leading zeros, "-" in front of negatives.
    [[nodiscard]] static COrvelString FromInt(int number);

    COrvelString& operator+=(const COrvelString& other);

    /// Both compare code points one by one: the order of the characters' numbers, upper and lower case apart.
    [[nodiscard]] bool operator==(const COrvelString& other) const { return text == other.text; }
    [[nodiscard]] std::strong_ordering operator<=>(const COrvelString& other) const { return text <=> other.text; }

    [[nodiscard]] bool IsEmpty() const { return text.empty(); }

    /// The 8-bit form: UTF-8.
    [[nodiscard]] std::string toStdString() const { return text; }

    /// UTF-8, NUL-terminated; valid until the text changes or dies.
    [[nodiscard]] const char* CString() const { return text.c_str(); }

    /// NUL-terminated, one element for each code point where wchar_t has 32 bits; valid until the text changes or dies.
    [[nodiscard]] const wchar_t* WideCString() const;

    // File names. `/` and `\` both end a folder name, on every system.

    /// True when a character does not fit the 8-bit file-name encoding (FileNameEncoding.h).
    [[nodiscard]] bool HasUnicode() const;

    /// Another name of the same existing file or folder that fits the 8-bit file-name encoding, with the trailing
    /// separator of this one. The text itself when it fits already, or when there is no such file or no such name.
    [[nodiscard]] COrvelString GetAnsiFileName() const;

    /// The folder part up to and including its last separator, as found; empty when there is none. The argument is the
    /// separator that the caller prefers; both count whichever it names.
    [[nodiscard]] COrvelString Path(char separator) const;

    /// Strips what Path returns.
    void RemovePath();

    /// Strips the last dot of the base name and what follows it.
    void RemoveExt();

    /// What follows the last dot of the base name; empty when it has none.
    [[nodiscard]] COrvelString Extension() const;

    /// Turns every `/` and `\` into the separator of this system.
    void ReplaceSlashWithSystemSlash();

private:
    [[nodiscard]] std::size_t BaseNameStart() const;
    [[nodiscard]] std::size_t LastDot() const; // std::string::npos: the base name has none

    std::string text;
    mutable std::wstring wide; // of `text`, or empty: not made yet
};

[[nodiscard]] ORVEL_CORE_API COrvelString operator+(const COrvelString& left, const COrvelString& right);
[[nodiscard]] ORVEL_CORE_API COrvelString operator+(const COrvelString& left, const char* right);
[[nodiscard]] ORVEL_CORE_API COrvelString operator+(const char* left, const COrvelString& right);

} // namespace Orvel
