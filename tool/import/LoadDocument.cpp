#include "tool/import/LoadDocument.h"

#include "tool/import/AssimpReader.h"
#include "tool/import/BinaryStl.h"
#include "tool/import/FileEnding.h"
#include "tool/import/GltfReader.h"
#include "tool/import/MappedFile.h"
#include "tool/import/TextureFiles.h"

#include <fstream>
#include <optional>
#include <system_error>
#include <utility>

namespace Orvel::Import
{
namespace
{

/// The one place where this is checked for all readers. Says in the user's terms why a path is no scene file, before a
/// library says it in its own.
void CheckIsFileWithContent(const std::filesystem::path& file)
{
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    if (status.type() == std::filesystem::file_type::not_found)
        throw ImportError("no such file");
    if (error)
        throw ImportError("cannot be opened: " + error.message());
    if (std::filesystem::is_directory(status))
        throw ImportError("is a folder, not a scene file");
    if (!std::filesystem::is_regular_file(status))
        throw ImportError("is not a regular file");
    if (!std::ifstream(file, std::ios::binary))
        throw ImportError("cannot be read");
    if (std::filesystem::file_size(file, error) == 0 && !error)
        throw ImportError("is empty");
}

} // namespace

ImportedScene ReadScene(const std::filesystem::path& file, ImportReport& report)
{
    CheckIsFileWithContent(file);
    if (IsGltf(file))
        return ReadGltf(file, report);
    if (EndingOf(file) == ".stl")
        if (std::optional<ImportedScene> scene = ReadBinaryStl(MappedFile(file).Bytes()))
            return std::move(*scene);
    return ReadWithAssimp(file, report);
}

LoadedDocument LoadDocument(const std::filesystem::path& file, const LoadOptions& options, ImportReport& report)
{
    ImportedScene scene = ReadScene(file, report);
    TextureFiles textures(file, options.textureFolders, options.temporaryFolder, report, options.largestTextureSide);
    LoadedDocument loaded = BuildDocument(std::move(scene), textures, options);
    // Cameras and groups alone are exported too, but a picture of them is blank.
    if (loaded.summary.objects == 0)
        report.Warn("nothing in the scene can be shown: there are no triangles");
    return loaded;
}

} // namespace Orvel::Import
