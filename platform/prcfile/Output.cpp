#include "platform/prcfile/Output.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <ostream>
#include <system_error>

namespace prc
{

namespace
{

/// An open file, removed again unless it is closed as complete.
class NewFile
{
public:
    explicit NewFile(const std::string& fileName)
        : name(fileName)
        , file(std::fopen(fileName.c_str(), "wb"))
    {
        if (file == nullptr)
            fail("cannot create ");
        // The pieces are large and written whole: a buffer would only copy them.
        std::setvbuf(file, nullptr, _IONBF, 0);
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile()
    {
        if (file != nullptr)
            std::fclose(file);
        if (!complete)
            removeRegularFile();
    }

    void write(std::span<const std::uint8_t> bytes)
    {
        if (!bytes.empty() && std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size())
            fail("cannot write ");
    }

    /// Some systems report only here that the disk is full.
    void close()
    {
        const bool closed = std::fclose(file) == 0;
        file = nullptr;
        if (!closed)
            fail("cannot write ");
        complete = true;
    }

private:
    [[noreturn]] void fail(const char* action) const
    {
        const int reason = errno != 0 ? errno : EIO;
        throw std::system_error(reason, std::generic_category(), action + name);
    }

    void removeRegularFile() const
    {
        std::error_code ignored;
        if (std::filesystem::is_regular_file(std::filesystem::symlink_status(name, ignored)))
            std::filesystem::remove(name, ignored);
    }

    const std::string& name;
    std::FILE* file;
    bool complete = false;
};

class FileOutput final : public Output
{
public:
    explicit FileOutput(const std::string& fileName)
        : name(fileName)
    {}

    void write(Pieces pieces) override
    {
        errno = 0;
        NewFile file(name);
        for (const std::span<const std::uint8_t> piece : pieces)
            file.write(piece);
        file.close();
    }

private:
    std::string name;
};

class MemoryOutput final : public Output
{
public:
    explicit MemoryOutput(std::vector<std::uint8_t>& target)
        : bytes(target)
    {}

    void write(Pieces pieces) override
    {
        std::size_t size = 0;
        for (const std::span<const std::uint8_t> piece : pieces)
            size += piece.size();
        std::vector<std::uint8_t> file;
        file.reserve(size);
        for (const std::span<const std::uint8_t> piece : pieces)
            file.insert(file.end(), piece.begin(), piece.end());
        bytes.swap(file);
    }

private:
    std::vector<std::uint8_t>& bytes;
};

class StreamOutput final : public Output
{
public:
    explicit StreamOutput(std::ostream& target)
        : stream(target)
    {}

    void write(Pieces pieces) override
    {
        for (const std::span<const std::uint8_t> piece : pieces)
            stream.write(reinterpret_cast<const char*>(piece.data()), static_cast<std::streamsize>(piece.size()));
        stream.flush();
        if (!stream)
            throw std::system_error(std::make_error_code(std::errc::io_error), "cannot write to the stream");
    }

private:
    std::ostream& stream;
};

} // namespace

std::unique_ptr<Output> Output::toFile(const std::string& name)
{
    return std::make_unique<FileOutput>(name);
}

std::unique_ptr<Output> Output::toMemory(std::vector<std::uint8_t>& bytes)
{
    return std::make_unique<MemoryOutput>(bytes);
}

std::unique_ptr<Output> Output::toStream(std::ostream& stream)
{
    return std::make_unique<StreamOutput>(stream);
}

} // namespace prc
