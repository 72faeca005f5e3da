#pragma once

#include "platform/prcfile/PRCModel.h"
#include "platform/prcfile/SectionReader.h"

#include <cstddef>
#include <span>

namespace prc
{

/// Reads parts, product occurrences and root of a file structure as far as they go. Indices are left as they are
/// stored, but counted from 0.
///
/// @param structures all of the file, for references from one into another: only their ids are looked at.
/// @param number     of the structure that is read, and that gets the result.
void readTree(SectionReader& section, std::span<Model::FileStructure> structures, std::size_t number);

/// @return the position of the structure with this id, nullIndex when there is none.
[[nodiscard]] std::uint32_t findStructure(std::span<const Model::FileStructure> structures, const UniqueId& id);

} // namespace prc
