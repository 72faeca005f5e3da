#include "platform/core/ReplacedFile.h"

#include <atomic>
#include <string>

#ifdef _WIN32
#include <process.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace Orvel
{

namespace
{

namespace fs = std::filesystem;

#ifdef _WIN32

/// Creates an empty file where none is yet.
bool CreateNew(const fs::path& path)
{
    std::error_code error;
    return !fs::exists(path, error) && std::ofstream(path).good();
}

int ProcessID()
{
    return _getpid();
}

#else

bool CreateNew(const fs::path& path)
{
    // Names that somebody else has put there, links above all, are never written through.
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    return descriptor >= 0 && ::close(descriptor) == 0;
}

int ProcessID()
{
    return ::getpid();
}

#endif

/// A new empty file in the folder of `target`; an empty path when there can be none.
fs::path CreateBeside(const fs::path& target)
{
    static std::atomic<unsigned> count = 0;
    constexpr int attempts = 100; // each fails only where a file of an earlier process with this number was left
    for (int attempt = 0; attempt < attempts; ++attempt) {
        fs::path path = target;
        path += ".new-" + std::to_string(ProcessID()) + "-" + std::to_string(++count);
        if (CreateNew(path))
            return path;
    }
    return {};
}

fs::path EndOfLinks(const fs::path& path)
{
    std::error_code error;
    fs::path end = fs::weakly_canonical(path, error);
    return error ? path : end;
}

} // namespace

fs::path FilePath(const COrvelString& fileName)
{
#ifdef _WIN32
    return fs::path(fileName.WideCString());
#else
    return fs::path(fileName.toStdString());
#endif
}

ReplacedFile::ReplacedFile(const fs::path& name)
    : target(EndOfLinks(name))
{
    std::error_code error;
    const fs::file_status status = fs::status(target, error);
    written = fs::exists(status) && !fs::is_regular_file(status) ? target : CreateBeside(target);
    if (!written.empty())
        stream.open(written, std::ios::binary);
}

ReplacedFile::~ReplacedFile()
{
    stream.close();
    std::error_code ignored;
    if (!written.empty() && !IsDirect())
        fs::remove(written, ignored);
}

bool ReplacedFile::Write(std::span<const std::uint8_t> bytes)
{
    return stream.is_open() &&
           stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size())).good();
}

bool ReplacedFile::Commit()
{
    if (!stream.is_open())
        return false;
    // Some systems report only here that the disk is full.
    stream.close();
    if (!stream.good() || IsDirect())
        return stream.good();
    std::error_code error;
    const fs::file_status previous = fs::status(target, error);
    if (fs::exists(previous))
        fs::permissions(written, previous.permissions(), error);
    fs::rename(written, target, error);
    if (error)
        return false;
    written.clear();
    return true;
}

} // namespace Orvel
