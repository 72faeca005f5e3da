#pragma once

namespace Orvel::Cli
{

/// `orvelprc formats`
struct FormatsOptions
{
    bool json = false;
};

/// Prints what can be read and written.
///
/// As JSON: an object with the lists "read" and "write" of objects with "name" (for people) and "extensions" (lower
/// case, without the dot).
///
/// @throws Failure when stdout cannot be written.
void RunFormats(const FormatsOptions& options);

} // namespace Orvel::Cli
