#pragma once

#include "platform/prcfile/PRCModel.h"

#include <string>

namespace Orvel::Cli
{

/// Opens the file that `inspect` and its like are given, whatever holds the model.
///
/// @return with the reader's findings; at least the main header was read.
/// @throws Failure when the file is no PRC file or cannot be read.
[[nodiscard]] prc::Model::PRCModel ReadModel(const std::string& path);

} // namespace Orvel::Cli
