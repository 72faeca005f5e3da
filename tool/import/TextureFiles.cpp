#include "tool/import/TextureFiles.h"

#include "tool/import/PictureFile.h"

#include <algorithm>
#include <fstream>
#include <set>
#include <system_error>
#include <tuple>
#include <utility>

namespace Orvel::Import
{

namespace
{

namespace fs = std::filesystem;

void WriteBytes(const fs::path& path, const std::vector<std::byte>& bytes)
{
    std::ofstream stream(path, std::ios::binary);
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream)
        throw std::system_error(std::make_error_code(std::errc::io_error), "cannot write " + path.string());
}

/// The ending tells formats apart that have no mark of their own at the file's begin (TGA).
std::string EndingFor(const ImportedImage& image)
{
    const std::string known = EndingOfPicture(image.encoded);
    return known.empty() ? fs::path(image.name).extension().string() : known;
}

} // namespace

TextureFiles::TextureFiles(const fs::path& sceneFile, const std::vector<fs::path>& textureFolders, fs::path temporary,
                           ImportReport& remarks, std::optional<std::uint32_t> largestStoredSide)
    : search(sceneFile, textureFolders)
    , temporaryFolder(std::move(temporary))
    , report(remarks)
    , largestSide(largestStoredSide)
{}

std::string TextureFiles::FileFor(const ImportedImage& image, Index index, bool alphaCounts)
{
    const Key key{index, alphaCounts};
    auto known = files.find(key);
    if (known == files.end())
        known = files.emplace(key, Prepare(image, index, alphaCounts)).first;
    const TextureFile& file = known->second;
    return file.path.empty() ? PathWithoutFile(image).string() : file.path;
}

/// Below a folder that is never made: whatever lies in the folder where the program runs is not taken for it.
fs::path TextureFiles::PathWithoutFile(const ImportedImage& image) const
{
    return temporaryFolder / "not-usable" / fs::path(image.path.empty() ? image.name : image.path).filename();
}

std::vector<TextureFile> TextureFiles::Used() const
{
    std::vector<TextureFile> used;
    std::set<std::tuple<std::size_t, std::uint32_t, std::uint32_t>> known;
    for (const auto& [key, file] : files) {
        if (!file.path.empty() && known.emplace(file.fingerprint, file.width, file.height).second)
            used.push_back(file);
    }
    return used;
}

TextureFile TextureFiles::Prepare(const ImportedImage& image, Index index, bool alphaCounts)
{
    auto place = located.find(index);
    if (place == located.end())
        place = located.emplace(index, Locate(image, index)).first;
    const fs::path& path = place->second;
    if (path.empty())
        return {};
    const auto header = ReadPictureHeader(path);
    if (header && (header->width > MaximumSide || header->height > MaximumSide ||
                   std::uint64_t{header->width} * header->height > MaximumPixels))
    {
        report.Warn("texture '" + image.name + "' is too large (" + std::to_string(header->width) + " x " +
                    std::to_string(header->height) + " pixels)");
        return {};
    }
    Picture picture = header ? LoadPicture(path) : Picture();
    if (picture.IsEmpty()) {
        report.Warn("texture '" + image.name + "' cannot be read as a picture");
        return {};
    }
    TextureFile file;
    file.name = image.name;
    file.path = path.string();
    file.width = picture.Width();
    file.height = picture.Height();
    file.hasAlpha = picture.IsTransparent();
    if (!FindStoredSize(file))
        return {};
    if (!picture.IsPlain() || (file.hasAlpha && !alphaCounts)) {
        const fs::path copy = TemporaryFile(index, alphaCounts ? "-converted.png" : "-opaque.png");
        if (!picture.MakePlain(alphaCounts)) {
            report.Warn("texture '" + image.name + "' has pixels of a kind that cannot be converted");
            return {};
        }
        picture.SavePng(copy);
        file.path = copy.string();
        file.hasAlpha = picture.IsTransparent();
    }
    file.fingerprint = picture.Fingerprint();
    return file;
}

/// The exporter's rule: both sides are divided by what brings the larger one to the limit, and cut to whole pixels.
bool TextureFiles::FindStoredSize(TextureFile& file)
{
    file.storedWidth = file.width;
    file.storedHeight = file.height;
    const std::uint32_t larger = std::max(file.width, file.height);
    if (!largestSide || larger <= *largestSide)
        return true;
    const double scale = static_cast<double>(larger) / static_cast<double>(*largestSide);
    file.storedWidth = static_cast<std::uint32_t>(static_cast<double>(file.width) / scale);
    file.storedHeight = static_cast<std::uint32_t>(static_cast<double>(file.height) / scale);
    if (file.storedWidth > 0 && file.storedHeight > 0)
        return true;
    report.Warn("texture '" + file.name + "' (" + std::to_string(file.width) + " x " + std::to_string(file.height) +
                " pixels) is left out: nothing of its shorter side is left when it is made smaller");
    return false;
}

fs::path TextureFiles::Locate(const ImportedImage& image, Index index)
{
    if (!image.encoded.empty()) {
        fs::path path = TemporaryFile(index, EndingFor(image));
        WriteBytes(path, image.encoded);
        return path;
    }
    if (!image.pixels.empty()) {
        const Picture picture = PictureFromRgba(image.pixels, image.width, image.height);
        if (picture.IsEmpty()) {
            report.Warn("texture '" + image.name + "' has no pixels");
            return {};
        }
        fs::path path = TemporaryFile(index, ".png");
        picture.SavePng(path);
        return path;
    }
    fs::path path = search.Find(image.path);
    if (path.empty())
        report.Warn("texture '" + image.name + "' was not found");
    return path;
}

fs::path TextureFiles::TemporaryFile(Index index, const std::string& ending) const
{
    return temporaryFolder / ("picture-" + std::to_string(index) + ending);
}

} // namespace Orvel::Import
