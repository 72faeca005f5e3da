#pragma once

#include "tool/cli/ExportOptions.h"

#include <string>

namespace Orvel
{
class COrvelDocument;
}

namespace Orvel::Cli
{

/// What an export writes before it is delivered.
struct ExportFiles
{
    std::string output;
    std::string record;    ///< empty: none
    std::string animation; ///< empty: none
};

/// Writes a document.
///
/// @param animated what the record shows: the animated run writes both files. Its manager is handed to the process.
/// Null:
///                 the plain run writes the output alone.
/// @throws Failure when a file cannot be written.
void WriteScene(COrvelDocument& document, Animate::AnimatedScene* animated, const ExportFiles& files,
                const ExportOptions& options);

} // namespace Orvel::Cli
