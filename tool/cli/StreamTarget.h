#pragma once

#include "tool/cli/FileDescriptor.h"
#include "tool/cli/OutputTarget.h"

namespace Orvel::Cli
{

/// A target that takes bytes but is no regular file with a name: a device, a pipe, stdout.
class StreamTarget final : public OutputTarget
{
public:
    /// As a name: stdout.
    static constexpr const char* StandardOutput = "-";

    /// @param targetName StandardOutput, or a device or named pipe, which is opened when the bytes are there.
    /// @param temporary  folder for the file to write to.
    StreamTarget(std::string targetName, const std::filesystem::path& temporary, std::string_view extension);

    [[nodiscard]] const std::string& FileToWrite() const override { return fileToWrite; }
    std::uint64_t Deliver(const SignalWatch& signals) override;
    [[nodiscard]] bool IsStandardOutput() const override { return name == StandardOutput; }
    [[nodiscard]] bool IsRegularFile() const override { return false; }

private:
    [[nodiscard]] FileDescriptor OpenStream(const SignalWatch& signals) const;
    void Write(int stream, std::string_view bytes, std::size_t pieceSize, const SignalWatch& signals) const;

    std::string name;
    std::string fileToWrite;
};

} // namespace Orvel::Cli
