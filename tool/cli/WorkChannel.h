#pragma once

#include "tool/cli/FileDescriptor.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Orvel::Cli
{

/// The working process's end of the pipe to the process that waits for it. A message is a JSON object on a line of its
/// own; invalid UTF-8 in its texts is replaced.
class WorkReporter
{
public:
    /// @param pipe not owned; open for writing.
    explicit WorkReporter(int pipe)
        : channel(pipe)
    {}

    /// What is being done from now on, as it reads after "while": "reading the scene".
    void Stage(std::string_view stage) const;

    /// A remark for the user.
    void Warning(std::string_view text) const;

    /// The last message: what the work yields.
    void Result(const nlohmann::json& result) const;

    /// The last message: why there is no result.
    void Failure(std::string_view text) const;

    /// The last message: memory has run out. Allocates nothing.
    void OutOfMemory() const;

private:
    void Send(const nlohmann::json& message) const;

    int channel;
};

/// Cuts what comes through the pipe into messages.
class WorkMessages
{
public:
    /// @param bytes the next bytes that came.
    /// @return the messages that they complete, in order; nothing when the bytes are no messages (the working process
    ///         has run wild).
    [[nodiscard]] std::optional<std::vector<nlohmann::json>> Take(std::string_view bytes);

private:
    std::string incomplete; ///< the bytes since the last end of line
};

} // namespace Orvel::Cli
