#pragma once

#include "tool/cli/OutputTarget.h"
#include "tool/cli/PRCInput.h"
#include "tool/cli/WorkLimits.h"
#include "tool/import/LoadDocument.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace Orvel::Cli
{

/// `orvelprc render`
struct RenderOptions
{
    ModelInput input;   ///< its file may be a scene as well
    std::string output; ///< a PNG file
    std::string view = "iso";
    std::uint32_t width = 1600; ///< pixels
    std::uint32_t height = 1200;
    std::optional<std::array<std::uint8_t, 3>> background{{255, 255, 255}}; ///< sRGB; nothing: transparent
    bool shadow = false;                                                    ///< on an invisible floor
    std::uint32_t samples = 8;
    Import::LoadOptions load; ///< of a scene; without its temporary folder
    ExistingFile existing = ExistingFile::Replace;
    LimitOptions limits;
    bool quiet = false; ///< neither warnings nor progress
};

/// Takes a picture of a scene, or of the model in a file, in a supervised process.
///
/// @throws Failure when there is no picture; then nothing was changed. Interrupted when the program was asked to end.
void RunRender(const RenderOptions& options);

} // namespace Orvel::Cli
