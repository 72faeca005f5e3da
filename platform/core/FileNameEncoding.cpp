#include "platform/core/FileNameEncoding.h"

#if defined(_WIN32)
#include "platform/core/COrvelString.h"

#include <algorithm>
#include <windows.h>
#elif defined(__linux__)
#include <fcntl.h>
#include <map>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#endif

namespace Orvel
{

namespace
{

#if defined(_WIN32)
FileNameEncoding encodingInUse = FileNameEncoding::Ascii;
#else
FileNameEncoding encodingInUse = FileNameEncoding::Utf8;
#endif

} // namespace

FileNameEncoding EightBitFileNameEncoding()
{
    return encodingInUse;
}

void SetEightBitFileNameEncoding(FileNameEncoding encoding)
{
    encodingInUse = encoding;
}

#if defined(_WIN32)

std::string AsciiFileName(const std::string& utf8)
{
    const COrvelString name(utf8);
    const DWORD capacity = GetShortPathNameW(name.WideCString(), nullptr, 0);
    std::wstring shortName(capacity, L'\0');
    const DWORD length = GetShortPathNameW(name.WideCString(), shortName.data(), capacity);
    if (length == 0 || length >= capacity)
        return {};
    shortName.resize(length);
    // A volume without short names gives the long one back.
    if (!std::all_of(shortName.begin(), shortName.end(), [](wchar_t unit) { return unit < 0x80; }))
        return {};
    return COrvelString(shortName.c_str()).toStdString();
}

#elif defined(__linux__)

namespace
{

using FileIdentity = std::pair<dev_t, ino_t>;

// The descriptors stay open until the process ends, for the names must stay good that long, and nothing has to be
// cleaned up afterwards as a link in some folder would. An open file keeps its identity from being given to another.
std::map<FileIdentity, int>& DescriptorByFile()
{
    static auto* const descriptors = new std::map<FileIdentity, int>;
    return *descriptors;
}

// -1 when the file does not exist.
int DescriptorOf(const std::string& utf8)
{
    struct stat status = {};
    const int opened = ::open(utf8.c_str(), O_PATH | O_CLOEXEC);
    if (opened < 0)
        return -1;
    if (::fstat(opened, &status) != 0) {
        ::close(opened);
        return -1;
    }
    const auto [entry, isNew] = DescriptorByFile().try_emplace({status.st_dev, status.st_ino}, opened);
    if (!isNew)
        ::close(opened);
    return entry->second;
}

} // namespace

std::string AsciiFileName(const std::string& utf8)
{
    const int descriptor = DescriptorOf(utf8);
    if (descriptor < 0)
        return {};
    // The file system of processes leads from a descriptor's number back to its file.
    const std::string name = "/proc/self/fd/" + std::to_string(descriptor);
    return ::access(name.c_str(), F_OK) == 0 ? name : std::string();
}

#else

std::string AsciiFileName(const std::string& /*utf8*/)
{
    return {};
}

#endif

} // namespace Orvel
