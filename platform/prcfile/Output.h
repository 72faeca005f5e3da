#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace prc
{

/// Where a finished file goes.
class Output
{
public:
    using Pieces = std::span<const std::span<const std::uint8_t>>;

    Output() = default;
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    virtual ~Output() = default;

    /// Opens the output, writes the pieces one behind the other and closes it. Called once.
    ///
    /// @throws std::system_error when any of it fails.
    virtual void write(Pieces pieces) = 0;

    /// A file by its 8-bit name. A regular file that cannot be completed is removed; devices and links stay.
    [[nodiscard]] static std::unique_ptr<Output> toFile(const std::string& name);

    /// @param bytes not owned; replaced by the file, untouched on failure.
    [[nodiscard]] static std::unique_ptr<Output> toMemory(std::vector<std::uint8_t>& bytes);

    /// @param stream not owned; flushed.
    [[nodiscard]] static std::unique_ptr<Output> toStream(std::ostream& stream);
};

} // namespace prc
