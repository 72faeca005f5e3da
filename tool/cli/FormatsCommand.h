#pragma once

#include "tool/import/AssimpReader.h"

#include <vector>

namespace Orvel::Cli
{

/// `orvelprc formats`
struct FormatsOptions
{
    bool json = false;
};

/// The formats of scenes that can be read.
[[nodiscard]] std::vector<Import::SceneFormat> ReadableFormats();

/// Prints what can be read and written.
///
/// As JSON: an object with the lists "read" and "write" of objects with "name" (for people) and "extensions" (lower
/// case, without the dot).
///
/// @throws Failure when stdout cannot be written.
void RunFormats(const FormatsOptions& options);

} // namespace Orvel::Cli
