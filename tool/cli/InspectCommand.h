#pragma once

#include "tool/cli/PRCInput.h"
#include "tool/cli/WorkLimits.h"

namespace Orvel::Cli
{

/// `orvelprc inspect`
struct InspectOptions
{
    ModelInput input;
    bool json = false;
    bool sections = false;  ///< with the two below: only these parts of the report; none of them: all
    bool tree = false;      ///< with the meshes that it places
    bool materials = false; ///< with the textures
    LimitOptions limits;
};

/// Prints what is inside a PRC file or a PDF with one, read in a supervised process. What the reader could not read is
/// told by warnings.
///
/// @throws Failure when the file cannot be read at all, or stdout cannot be written. Interrupted when the program was
///         asked to end.
void RunInspect(const InspectOptions& options);

} // namespace Orvel::Cli
