#pragma once

#include "tool/cli/OutputTarget.h"
#include "tool/cli/PRCInput.h"
#include "tool/cli/WorkLimits.h"

#include <optional>
#include <string>

namespace Orvel::Cli
{

enum class ConvertFormat
{
    Glb,
    Gltf,
    Obj,
    Stl,
    Ply,
    Prc ///< the model as it stands, byte for byte
};

/// `orvelprc convert`
struct ConvertOptions
{
    ModelInput input;
    std::string output;
    ConvertFormat format = ConvertFormat::Glb;
    std::optional<double> scale; ///< for lengths; nothing: into the unit of the format, where it has one
    ExistingFile existing = ExistingFile::Replace;
    LimitOptions limits;
    bool quiet = false;  ///< neither warnings nor progress nor the summary as text
    bool strict = false; ///< a warning makes the conversion fail
    bool json = false;   ///< the summary as JSON
};

/// Reads the model of a PRC or PDF file and writes it in another format, in a supervised process; prints warnings and
/// the summary.
///
/// @throws Failure when there is no result; then nothing was changed. Interrupted when the program was asked to end.
void RunConvert(const ConvertOptions& options);

} // namespace Orvel::Cli
