#pragma once

#include <filesystem>
#include <string_view>

namespace Orvel::Import
{

/// Refuses scene files that are cut short or plainly damaged. Assimp reads of such files what it happens to find and
/// keeps silent about the rest, or works for minutes on counts that no byte stands behind.
///
/// Each check takes the whole content of a file of its format, reads it once and never beyond its end, and passes files
/// that it does not understand enough of to judge.
/// @throws ImportError with what is wrong.
void CheckPly(std::string_view bytes);    ///< every element that the header counts is there
void CheckStl(std::string_view bytes);    ///< binary: size and number of triangles agree; text: it ends with "endsolid"
void CheckOff(std::string_view bytes);    ///< there is a line for every point and face
void CheckBraces(std::string_view bytes); ///< no brace is left open; of OpenGEX and ASE
void CheckIfc(std::string_view bytes);    ///< text: it ends with the closing line of its exchange structure
void CheckLwo(std::string_view bytes);    ///< it is as long as its outermost chunk
void CheckObj(std::string_view bytes);    ///< corners of faces are numbers; the last line is no torso

/// The check that belongs to the file's ending, if there is one.
/// @throws ImportError also when the file cannot be read.
void CheckMeshFile(const std::filesystem::path& file);

} // namespace Orvel::Import
