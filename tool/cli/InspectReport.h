#pragma once

#include "platform/prcfile/PRCModel.h"
#include "platform/prcfile/PRCScene.h"
#include "tool/cli/ModelStatistics.h"
#include "tool/cli/PRCInput.h"

#include <optional>
#include <string>

namespace Orvel::Cli
{

/// Which parts of a report are wanted. What the file is comes always.
struct ReportParts
{
    bool sections = true;
    bool tree = true;
    bool meshes = true;
    bool materials = true; ///< with the textures
};

/// A model with everything that a report on it tells.
struct InspectedModel
{
    std::string file;             ///< as given on the command line
    std::optional<PdfOrigin> pdf; ///< nothing when the file is no PDF
    prc::Model::PRCModel model;
    prc::Model::PlacedScene scene;
    ModelStatistics statistics;
};

/// The report for people.
[[nodiscard]] std::string TextReport(const InspectedModel& inspected, const ReportParts& parts);

/// The report for programs, indented, with an end of line; docs/inspect-json.md tells its shape, which stays.
[[nodiscard]] std::string JsonReport(const InspectedModel& inspected, const ReportParts& parts);

/// "png", "jpeg", "rgb", "rgba", "grey", "grey alpha", "unknown".
[[nodiscard]] std::string PictureFormatName(prc::Model::PictureFormat format);

/// What the six sections of a file structure are called, by prc::Section.
[[nodiscard]] std::string SectionName(std::size_t section);

/// "read", "partial", "skipped", "damaged", "absent".
[[nodiscard]] std::string StateName(prc::Model::SectionState state);

} // namespace Orvel::Cli
