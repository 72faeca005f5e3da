#pragma once

#include "platform/prcfile/PRCGlobals.h"
#include "platform/prcfile/SectionReader.h"

namespace prc
{

/// Reads the globals of a file structure as far as they go, behind the schemas. Indices are left as they are stored,
/// but counted from 0; colours as the position of their first number.
void readGlobals(SectionReader& section, Model::Globals& globals);

} // namespace prc
