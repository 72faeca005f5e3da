#pragma once

#include <string>

namespace Orvel::Cli
{

/// The version of the program: "0.1.0".
[[nodiscard]] std::string Version();

/// The version and, where the sources were under version control, their revision: "0.1.0 (revision 0123456789ab)". A +
/// behind the revision tells that the sources had been changed since.
[[nodiscard]] std::string VersionWithRevision();

} // namespace Orvel::Cli
