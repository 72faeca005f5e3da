#pragma once

#include "tool/import/ImportReport.h"
#include "tool/import/ImportedScene.h"
#include "tool/import/PictureSearch.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Orvel::Import
{

/// A picture file that stands ready for the export.
struct TextureFile
{
    std::string name; ///< of the picture, for people
    std::string path; ///< UTF-8; of the file that the exporter loads: the original, or a copy in the temporary folder
    std::uint32_t width = 0;        ///< pixels, of the source
    std::uint32_t height = 0;       ///< pixels, of the source
    std::uint32_t storedWidth = 0;  ///< pixels, within the export's size limit
    std::uint32_t storedHeight = 0; ///< pixels, within the export's size limit
    bool hasAlpha = false;          ///< the exporter finds transparency in `path`
    std::size_t fingerprint = 0;    ///< of the pixels in `path`, see Picture
};

/// Turns the pictures of an imported scene into files that the exporter can load from disk.
///
/// External pictures are looked for where the scene says, then by base name and without regard to case in the scene's
/// folder, its usual sub-folders and the folders that the user names. Embedded pictures are written to a temporary
/// folder. A picture whose transparency does not count, or whose pixels have no direct form with 8 bits per channel, is
/// replaced by a converted copy there. What cannot be used becomes a warning in the report, once for each picture.
class TextureFiles
{
public:
    /// The largest picture that is decoded: header sizes beyond either limit are refused unread.
    static constexpr std::uint32_t MaximumSide = 16384;
    static constexpr std::uint64_t MaximumPixels = std::uint64_t{1} << 28;

    /// @param sceneFile       the scene that names the pictures; relative paths start from its folder.
    /// @param textureFolders  searched after the scene's own folders, in order.
    /// @param temporaryFolder exists, is writable and private to this run; the caller removes it after the export.
    /// @param report          not owned; must outlive this object.
    /// @param largestSide     in pixels, 1 or more: what the export scales pictures down to; nothing: they keep their
    ///                        size.
    TextureFiles(const std::filesystem::path& sceneFile, const std::vector<std::filesystem::path>& textureFolders,
                 std::filesystem::path temporaryFolder, ImportReport& report,
                 std::optional<std::uint32_t> largestSide = {});

    /// The file with the pixels of one picture; found, checked and converted on the first call, remembered afterwards.
    ///
    /// @param image       the picture; may be emptied by the caller after the last call with its index.
    /// @param index       its index in the scene: the key under which results are remembered.
    /// @param alphaCounts false: the file returned has no transparency.
    /// @return UTF-8 path of the file; when the picture cannot be used (the report then holds a warning), a path with
    ///         the picture's file name where there is no file.
    ///         std::system_error when a copy cannot be written to the temporary folder.
    std::string FileFor(const ImportedImage& image, Index index, bool alphaCounts);

    /// The usable files that FileFor returned, ordered by picture index, equal pictures once; a picture with
    /// transparency that was asked for with and without is two pictures.
    [[nodiscard]] std::vector<TextureFile> Used() const;

private:
    using Key = std::pair<Index, bool>; ///< picture, whether its alpha counts

    [[nodiscard]] std::filesystem::path PathWithoutFile(const ImportedImage& image) const;
    /// @return false, with a warning, when the size limit leaves nothing of a picture.
    bool FindStoredSize(TextureFile& file);
    TextureFile Prepare(const ImportedImage& image, Index index, bool alphaCounts);
    /// Where the picture lies on disk, after an embedded one was written there; empty, with a warning, when nowhere.
    std::filesystem::path Locate(const ImportedImage& image, Index index);
    [[nodiscard]] std::filesystem::path TemporaryFile(Index index, const std::string& ending) const;

    PictureSearch search;
    std::filesystem::path temporaryFolder;
    ImportReport& report;
    std::optional<std::uint32_t> largestSide;
    std::map<Index, std::filesystem::path> located;
    std::map<Key, TextureFile> files; ///< an empty path: the picture cannot be used
};

} // namespace Orvel::Import
