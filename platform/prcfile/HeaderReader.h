#pragma once

#include "platform/prcfile/Findings.h"
#include "platform/prcfile/PRCModel.h"
#include "platform/prcfile/PRCReader.h"
#include "platform/prcfile/ReadBudget.h"

#include <cstdint>
#include <span>

namespace prc
{

/// Reads the main header: versions, ids, and where the sections of each file structure and the model file begin.
///
/// @param model out: gets a structure, with the offsets of its sections, for each that the file has.
/// @return false when nothing more can be read from the file.
[[nodiscard]] bool readMainHeader(std::span<const std::uint8_t> file, const ReadLimits& limits, Model::PRCModel& model);

/// Reads the header of a file structure, with the pictures that are stored in it.
void readStructureHeader(std::span<const std::uint8_t> file, Model::FileStructure& structure, ReadBudget& budget,
                         Findings& findings);

} // namespace prc
