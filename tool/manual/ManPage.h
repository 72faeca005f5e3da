#pragma once

#include "tool/manual/ProgramDescription.h"

#include <string>

namespace Orvel::Manual
{

/// The manual page of section 1, in the man macros of roff. It carries no date: equal programs give equal pages.
[[nodiscard]] std::string ManPage(const ProgramDescription& program);

} // namespace Orvel::Manual
