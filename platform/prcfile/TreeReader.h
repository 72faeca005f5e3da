#pragma once

#include "platform/prcfile/PRCModel.h"
#include "platform/prcfile/SectionReader.h"
#include "platform/prcfile/StructureIds.h"

#include <cstddef>

namespace prc
{

/// Reads parts, product occurrences and root of a file structure as far as they go. Indices are left as they are
/// stored, but counted from 0.
///
/// @param ids    of all file structures, for references from one into another.
/// @param target the structure that is read.
/// @param number its position among all.
void readTree(SectionReader& section, const StructureIds& ids, Model::FileStructure& target, std::size_t number);

} // namespace prc
