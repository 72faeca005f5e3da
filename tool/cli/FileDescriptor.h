#pragma once

#include <unistd.h>

#include <utility>

namespace Orvel::Cli
{

/// Owner of an open file descriptor.
class FileDescriptor
{
public:
    FileDescriptor() = default;

    /// @param opened owned from now on; -1: none.
    explicit FileDescriptor(int opened)
        : descriptor(opened)
    {}

    FileDescriptor(FileDescriptor&& other) noexcept
        : descriptor(std::exchange(other.descriptor, -1))
    {}

    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(descriptor, other.descriptor);
        return *this;
    }

    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    ~FileDescriptor() { Close(); }

    [[nodiscard]] int Get() const { return descriptor; }

    [[nodiscard]] bool IsOpen() const { return descriptor >= 0; }

    void Close()
    {
        if (descriptor >= 0)
            ::close(std::exchange(descriptor, -1));
    }

private:
    int descriptor = -1;
};

} // namespace Orvel::Cli
