#pragma once

#include "tool/cli/Errors.h"
#include "tool/cli/InputFile.h"
#include "tool/cli/SignalWatch.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace Orvel::Cli
{

/// What becomes of a file that stands at the target already.
enum class ExistingFile
{
    Replace,
    Keep ///< the target is refused
};

/// The place where a result shall end, and the file that is written in its stead until it is complete.
///
/// A regular file, or a name where nothing is yet, gets its content by renaming a finished file from the same folder:
/// what was there before stays as it was until then. Links are followed; mode and, where allowed, owner of an existing
/// file are kept. Devices, pipes and stdout receive a copy of the finished file.
class OutputTarget
{
public:
    /// Checks the target and creates the file to write to.
    ///
    /// @param name      where the result shall end; "-" and "/dev/stdout" are stdout, which must not be a terminal.
    /// @param extension of the file to write to, with its dot; ASCII.
    /// @param input     the file that the result is made from; never overwritten.
    /// @param temporary folder for what cannot be written beside the target.
    /// @throws Failure when the target cannot be written, is kept, or is the input.
    static std::unique_ptr<OutputTarget> Open(const std::string& name, std::string_view extension,
                                              const InputFile& input, ExistingFile existing,
                                              const std::filesystem::path& temporary);

    OutputTarget(const OutputTarget&) = delete;
    OutputTarget& operator=(const OutputTarget&) = delete;
    virtual ~OutputTarget() = default;

    /// The file to write to; may be there already, and empty. Removed with this object unless delivered.
    [[nodiscard]] virtual const std::string& FileToWrite() const = 0;

    /// Brings the finished file to the target.
    ///
    /// @return its size in bytes.
    /// @throws Failure when that is not possible. Interrupted when the program was asked to end meanwhile.
    virtual std::uint64_t Deliver(const SignalWatch& signals) = 0;

    /// True when the bytes of the result go to stdout, where then nothing else may be printed.
    [[nodiscard]] virtual bool IsStandardOutput() const = 0;

    /// True when the result gets a name in a folder, where files that belong to it can stand beside it.
    [[nodiscard]] virtual bool IsRegularFile() const = 0;

protected:
    OutputTarget() = default;
};

/// @param name of a target, see above.
/// @throws Failure when it is a file that the result is made from.
void RefuseInputAsOutput(const std::string& name, const InputFile& input);

/// The failure that a target cannot be written.
[[nodiscard]] Failure CannotWrite(std::string_view name, const std::string& reason);

} // namespace Orvel::Cli
