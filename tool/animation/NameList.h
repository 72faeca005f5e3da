#pragma once

#include <string>
#include <vector>

namespace Orvel::Animate
{

/// For the user who asked for something by a name that nothing has: "there is no camera 'x', only 'a' and 'b'".
[[nodiscard]] std::string NotFound(const std::string& kind, const std::string& name,
                                   const std::vector<std::string>& known);

} // namespace Orvel::Animate
