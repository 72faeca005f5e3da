#pragma once

#include "tool/cli/WorkLimits.h"

#include <string>

namespace Orvel::Cli
{

/// `orvelprc export --list`
struct ListOptions
{
    std::string scene;
    LimitOptions limits;
    bool json = false; ///< as JSON
};

/// Prints the names that other options and scripts ask for: cameras, clips, variants and materials of a scene, which is
/// read in a supervised process.
///
/// @throws Failure when the scene cannot be read. Interrupted when the program was asked to end.
void RunList(const ListOptions& options);

} // namespace Orvel::Cli
