#pragma once

#include <filesystem>

namespace Orvel::Cli
{

/// A private folder for one run of the program, below $TMPDIR or the system's own choice. It disappears with this
/// object, with everything in it.
class TemporaryFolder
{
public:
    /// @throws Failure when it cannot be made.
    TemporaryFolder();

    /// A hidden one in `parent`, for files that shall be moved from it.
    explicit TemporaryFolder(const std::filesystem::path& parent);

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    [[nodiscard]] const std::filesystem::path& Path() const { return path; }

private:
    std::filesystem::path path;
};

} // namespace Orvel::Cli
