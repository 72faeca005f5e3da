#pragma once

#include <string_view>

namespace Orvel::Import
{

/// Refuses JSON text that is nested more than 256 levels deep. Parsers of it, and of its values, call themselves for
/// each level, so the depth must be known before they run. Whether it is JSON at all is theirs to say.
/// @throws ImportError
void CheckJsonDepth(std::string_view text);

} // namespace Orvel::Import
