#include "tool/cli/WorkChannel.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <utility>

namespace Orvel::Cli
{

namespace
{

/// A message longer than this comes from a process that has run wild.
constexpr std::size_t LongestMessage = std::size_t{1} << 30;

constexpr std::string_view OutOfMemoryMessage = "{\"outOfMemory\":true}\n";

void Write(int channel, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(channel, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            // Nobody listens any more: the process that waited has ended, and so does this one.
            std::_Exit(EXIT_FAILURE);
        }
        bytes.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
}

} // namespace

void WorkReporter::Stage(std::string_view stage) const
{
    Send({{"stage", stage}});
}

void WorkReporter::Warning(std::string_view text) const
{
    Send({{"warning", text}});
}

void WorkReporter::Result(const nlohmann::json& result) const
{
    Send({{"result", result}});
}

void WorkReporter::Failure(std::string_view text) const
{
    Send({{"failure", text}});
}

void WorkReporter::OutOfMemory() const
{
    Write(channel, OutOfMemoryMessage);
}

void WorkReporter::Send(const nlohmann::json& message) const
{
    Write(channel, message.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n");
}

std::optional<std::vector<nlohmann::json>> WorkMessages::Take(std::string_view bytes)
{
    std::vector<nlohmann::json> messages;
    for (std::size_t end = bytes.find('\n'); end != std::string_view::npos; end = bytes.find('\n')) {
        incomplete.append(bytes.substr(0, end));
        bytes.remove_prefix(end + 1);
        auto message = nlohmann::json::parse(std::exchange(incomplete, {}), nullptr, false);
        if (!message.is_object())
            return std::nullopt;
        messages.push_back(std::move(message));
    }
    incomplete.append(bytes);
    if (incomplete.size() > LongestMessage)
        return std::nullopt;
    return messages;
}

} // namespace Orvel::Cli
