#pragma once

#include <string>

namespace prc
{

/// Makes text of foreign bytes: what is not UTF-8 becomes U+FFFD, and null characters are dropped.
[[nodiscard]] std::string validUtf8(std::string bytes);

} // namespace prc
