#pragma once

#include "tool/cli/FileDescriptor.h"
#include "tool/cli/OutputTarget.h"

#include <sys/types.h>

#include <filesystem>
#include <optional>

namespace Orvel::Cli
{

/// A target that is a regular file or does not exist yet.
class RegularFileTarget final : public OutputTarget
{
public:
    /// Finds the end of all links and creates the file to write to beside it.
    ///
    /// @throws Failure when the folder is missing or cannot be written.
    RegularFileTarget(std::string targetName, std::string_view extension, ExistingFile existingFile);
    ~RegularFileTarget() override;

    [[nodiscard]] const std::string& FileToWrite() const override { return fileToWrite; }
    std::uint64_t Deliver(const SignalWatch& signals) override;
    [[nodiscard]] bool IsStandardOutput() const override { return false; }
    [[nodiscard]] bool IsRegularFile() const override { return true; }

private:
    void GiveModeAndOwner() const;
    void MoveIntoPlace() const;

    std::string name; ///< as the user gave it, for messages
    ExistingFile existing;
    std::filesystem::path target; ///< the end of all links
    FileDescriptor folder;        ///< of the target
    std::string temporaryName;    ///< in `folder`; empty once it is gone
    std::string fileToWrite;
};

} // namespace Orvel::Cli
