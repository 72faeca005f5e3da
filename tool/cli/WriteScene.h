#pragma once

#include "tool/cli/ExportOptions.h"
#include "tool/import/LoadDocument.h"

#include <string>

namespace Orvel::Cli
{

/// What an export writes before it is delivered.
struct ExportFiles
{
    std::string output;
    std::string record; ///< empty: none
};

/// Writes a document, and the record if one is asked for.
/// @throws Failure when a file cannot be written.
void WriteScene(const Import::LoadedDocument& loaded, const ExportFiles& files, const ExportOptions& options);

} // namespace Orvel::Cli
