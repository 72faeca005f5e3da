#pragma once

#include <string_view>

namespace Orvel::Player
{

/// The part of a player's script that is the same for all: functions, with startPlayer(data) as the entrance.
[[nodiscard]] std::string_view PlayerRuntime();

/// The functions that pages call; they use a variable orvelPlayer, what startPlayer has returned.
[[nodiscard]] std::string_view PlayerCommands();

} // namespace Orvel::Player
