#pragma once

#include "tool/cli/OutputTarget.h"
#include "tool/import/LoadDocument.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace Orvel::Cli
{

/// What the user can set for supervised work.
struct LimitOptions
{
    std::optional<std::chrono::milliseconds> time; ///< nothing: in proportion to the input; 0: no limit
    std::optional<std::uint64_t> memoryInBytes;    ///< nothing: in proportion to the input; 0: no limit
};

/// `orvelprc export`
struct ExportOptions
{
    std::string scene;
    std::string output;
    Import::LoadOptions load;      ///< without its temporary folder
    int maximumTextureSize = 1024; ///< pixels, 1 or more, of the larger side
    ExistingFile existing = ExistingFile::Replace;
    LimitOptions limits;
    bool quiet = false;  ///< neither warnings nor progress nor the summary as text
    bool strict = false; ///< a warning makes the export fail
    bool json = false;   ///< the summary as JSON
};

} // namespace Orvel::Cli
