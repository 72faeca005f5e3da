#include "tool/convert/CheckedFiles.h"

#include <assimp/IOStream.hpp>

#include <cerrno>
#include <cstdio>

namespace Orvel::Convert
{

namespace
{

/// Only for writing.
class CheckedFile final : public Assimp::IOStream
{
public:
    CheckedFile(std::FILE* openFile, int& writeError)
        : file(openFile)
        , error(writeError)
    {}

    CheckedFile(const CheckedFile&) = delete;
    CheckedFile& operator=(const CheckedFile&) = delete;
    ~CheckedFile() override { Note(std::fclose(file) == 0); }

    std::size_t Read(void*, std::size_t, std::size_t) override { return 0; }

    std::size_t Write(const void* bytes, std::size_t size, std::size_t count) override
    {
        const std::size_t written = std::fwrite(bytes, size, count, file);
        Note(written == count || size == 0);
        return written;
    }

    aiReturn Seek(std::size_t offset, aiOrigin origin) override
    {
        const int whence = origin == aiOrigin_SET ? SEEK_SET : origin == aiOrigin_CUR ? SEEK_CUR : SEEK_END;
        const bool done = std::fseek(file, static_cast<long>(offset), whence) == 0;
        Note(done);
        return done ? aiReturn_SUCCESS : aiReturn_FAILURE;
    }

    [[nodiscard]] std::size_t Tell() const override { return static_cast<std::size_t>(std::ftell(file)); }
    [[nodiscard]] std::size_t FileSize() const override { return 0; }
    void Flush() override { Note(std::fflush(file) == 0); }

private:
    void Note(bool isDone)
    {
        if (!isDone && error == 0)
            error = errno;
    }

    std::FILE* file;
    int& error;
};

} // namespace

Assimp::IOStream* CheckedFiles::Open(const char* file, const char* mode)
{
    std::FILE* const opened = std::fopen(file, mode);
    if (opened)
        return new CheckedFile(opened, error);
    error = error == 0 ? errno : error;
    return nullptr;
}

void CheckedFiles::Close(Assimp::IOStream* stream)
{
    delete stream;
}

} // namespace Orvel::Convert
