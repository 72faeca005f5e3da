#pragma once

#include "tool/import/DocumentBuilder.h"
#include "tool/import/ImportReport.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace Orvel::Import
{

/// How a scene file becomes a document.
struct LoadOptions : BuildOptions
{
    std::vector<std::filesystem::path> textureFolders; ///< searched for pictures after the scene's own folders
    std::filesystem::path temporaryFolder; ///< exists, private to this run, kept until the export is done: converted
                                           ///< and embedded pictures go there
    std::optional<std::uint32_t> largestTextureSide; ///< pixels, 1 or more: the export's limit; nothing: none
};

using LoadedDocument = BuiltDocument;

/// Reads a scene file without building a document of it; see LoadDocument.
[[nodiscard]] ImportedScene ReadScene(const std::filesystem::path& file, ImportReport& report);

/// Reads a scene file, glTF 2.0 through its own reader and every other format through Assimp, and builds its document.
///
/// @param file   the scene; further files that it names are looked for beside it.
/// @param report receives what could not be kept, and whether the document has no object at all.
/// @throws ImportError when the file is missing, not a regular file, empty, or cannot be read as a scene.
///         std::system_error when the temporary folder cannot be written. std::bad_alloc passes through.
///         Damaged files may crash or delay the libraries below: run it in a process that can be lost.
[[nodiscard]] LoadedDocument LoadDocument(const std::filesystem::path& file, const LoadOptions& options,
                                          ImportReport& report);

} // namespace Orvel::Import
