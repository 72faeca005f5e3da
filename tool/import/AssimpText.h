#pragma once

#include <assimp/types.h>

#include <string>
#include <string_view>

namespace Orvel::Import
{

/// Text of a scene file as UTF-8 in one line. Bytes that are no UTF-8 are read as Windows-1252, the encoding of the
/// older formats; control characters become spaces.
[[nodiscard]] std::string Utf8From(std::string_view bytes);
[[nodiscard]] std::string Utf8From(const aiString& text);

/// An error message of Assimp as one line for people: without line breaks, names of loaders and the full stop; never
/// empty.
/// @param file as it was handed to Assimp, which repeats it; "the file" takes its place.
[[nodiscard]] std::string ErrorTextFrom(std::string_view message, std::string_view file);

} // namespace Orvel::Import
