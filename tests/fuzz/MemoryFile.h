#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace Orvel::Test
{

/// A file in memory for readers that take a path.
class MemoryFile
{
public:
    /// The file's name in its folder is the same in every run: a fuzzed file can name itself.
    static constexpr int number = 100;

    MemoryFile();

    /// Replaces the content. Ends the process when that fails.
    void Fill(const std::uint8_t* data, std::size_t size) const;

    [[nodiscard]] const std::string& Path() const { return path; }

private:
    std::string path;
};

} // namespace Orvel::Test
