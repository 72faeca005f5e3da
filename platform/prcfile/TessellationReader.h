#pragma once

#include "platform/prcfile/Findings.h"
#include "platform/prcfile/PRCModel.h"
#include "platform/prcfile/SectionReader.h"

namespace prc
{

/// Reads the tessellations of a file structure as far as they go. The reader of the section tells by ok() whether all
/// of them were read.
///
/// @param findings for faces that cannot be used.
void readTessellations(SectionReader& section, Model::FileStructure& structure, Findings& findings);

} // namespace prc
