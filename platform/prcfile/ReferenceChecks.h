#pragma once

#include "platform/prcfile/Findings.h"
#include "platform/prcfile/PRCModel.h"

#include <span>

namespace prc
{

/// Makes the indices inside a file structure what its users expect: existing entries, or none. Colours, which are
/// stored as the position of their first number, become positions of colours.
void resolveReferences(Model::FileStructure& structure, Findings& findings);

/// The same for references from one file structure into another, once all of them are read.
void resolveOccurrenceReferences(std::span<Model::FileStructure> structures, Findings& findings);

} // namespace prc
