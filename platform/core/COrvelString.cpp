#include "platform/core/COrvelString.h"

#include "platform/core/FileNameEncoding.h"

#include <QString>

#include <algorithm>
#include <utility>

namespace Orvel
{

namespace
{

#ifdef _WIN32
constexpr char SystemSeparator = '\\';
constexpr const char* SystemSeparators = "/\\";
#else
constexpr char SystemSeparator = '/';
constexpr const char* SystemSeparators = "/";
#endif

constexpr const char* AllSeparators = "/\\";

// Qt takes a leading U+FEFF for a mark of the encoding and drops it. In a text it is a character like any other: with
// something in front of it, it stays.
constexpr char Guard = '.';

std::wstring WideFromUtf8(const std::string& utf8)
{
    return QString::fromStdString(Guard + utf8).mid(1).toStdWString();
}

std::string Utf8FromWide(const wchar_t* wide)
{
    std::wstring guarded(1, static_cast<wchar_t>(Guard));
    guarded += wide;
    return QString::fromStdWString(guarded).mid(1).toStdString();
}

} // namespace

COrvelString::COrvelString(const char* utf8)
    : text(utf8 ? utf8 : "")
{}

COrvelString::COrvelString(const wchar_t* wideText)
    : text(wideText ? Utf8FromWide(wideText) : std::string())
{}

COrvelString::COrvelString(std::string utf8)
    : text(std::move(utf8))
{}

COrvelString::COrvelString(int number)
    : text(std::to_string(number))
{}

COrvelString COrvelString::FromInt(int number)
{
    return COrvelString(number);
}

COrvelString& COrvelString::operator+=(const COrvelString& other)
{
    text += other.text;
    wide.clear();
    return *this;
}

const wchar_t* COrvelString::WideCString() const
{
    if (wide.empty() && !text.empty())
        wide = WideFromUtf8(text);
    return wide.c_str();
}

bool COrvelString::HasUnicode() const
{
    const auto isAscii = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
    return EightBitFileNameEncoding() == FileNameEncoding::Ascii && !std::all_of(text.begin(), text.end(), isAscii);
}

COrvelString COrvelString::GetAnsiFileName() const
{
    if (!HasUnicode())
        return *this;
    const std::size_t nameEnd = text.find_last_not_of(SystemSeparators) + 1;
    const std::string name = AsciiFileName(text.substr(0, nameEnd));
    return name.empty() ? *this : COrvelString(name + text.substr(nameEnd));
}

COrvelString COrvelString::Path(char /*separator*/) const
{
    return COrvelString(text.substr(0, BaseNameStart()));
}

void COrvelString::RemovePath()
{
    text.erase(0, BaseNameStart());
    wide.clear();
}

void COrvelString::RemoveExt()
{
    const std::size_t dot = LastDot();
    if (dot == std::string::npos)
        return;
    text.erase(dot);
    wide.clear();
}

COrvelString COrvelString::Extension() const
{
    const std::size_t dot = LastDot();
    return dot == std::string::npos ? COrvelString() : COrvelString(text.substr(dot + 1));
}

void COrvelString::ReplaceSlashWithSystemSlash()
{
    const auto isSeparator = [](char byte) { return byte == '/' || byte == '\\'; };
    std::replace_if(text.begin(), text.end(), isSeparator, SystemSeparator);
    wide.clear();
}

std::size_t COrvelString::BaseNameStart() const
{
    const std::size_t separator = text.find_last_of(AllSeparators);
    return separator == std::string::npos ? 0 : separator + 1;
}

std::size_t COrvelString::LastDot() const
{
    const std::size_t dot = text.rfind('.');
    return dot == std::string::npos || dot < BaseNameStart() ? std::string::npos : dot;
}

COrvelString operator+(const COrvelString& left, const COrvelString& right)
{
    COrvelString sum = left;
    return sum += right;
}

COrvelString operator+(const COrvelString& left, const char* right)
{
    return left + COrvelString(right);
}

COrvelString operator+(const char* left, const COrvelString& right)
{
    return COrvelString(left) + right;
}

} // namespace Orvel
