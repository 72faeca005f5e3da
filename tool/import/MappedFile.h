#pragma once

#include <cstddef>
#include <filesystem>
#include <string_view>

namespace Orvel::Import
{

/// The bytes of a file as long as the object lives, without a copy of them in memory.
class MappedFile
{
public:
    /// @throws ImportError when the file cannot be read.
    explicit MappedFile(const std::filesystem::path& file);
    ~MappedFile();

    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    [[nodiscard]] std::string_view Bytes() const { return {static_cast<const char*>(data), size}; }

private:
    void* data = nullptr; ///< null for an empty file
    std::size_t size = 0;
};

} // namespace Orvel::Import
