#include "tool/import/AssimpFiles.h"

#include "tool/import/AssimpText.h"
#include "tool/import/FileEnding.h"
#include "tool/import/MappedFile.h"

#include <assimp/MemoryIOWrapper.h>

#include <QString>

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdint>
#include <memory>
#include <string_view>
#include <system_error>

namespace Orvel::Import
{

namespace
{

namespace fs = std::filesystem;

bool IsFile(const fs::path& file)
{
    std::error_code ignored;
    return fs::is_regular_file(file, ignored);
}

/// Pipes can be read as well.
bool CanBeOpened(const fs::path& file)
{
    std::error_code ignored;
    const fs::file_status status = fs::status(file, ignored);
    return fs::exists(status) && !fs::is_directory(status);
}

bool IsUtf16Wavefront(const fs::path& file)
{
    const std::string ending = EndingOf(file);
    if ((ending != ".obj" && ending != ".mtl") || !IsFile(file))
        return false;
    const MappedFile mapped(file);
    return mapped.Bytes().starts_with("\xFF\xFE") || mapped.Bytes().starts_with("\xFE\xFF");
}

/// @return owns its bytes.
std::unique_ptr<Assimp::IOStream> InUtf8(const fs::path& file)
{
    const MappedFile mapped(file);
    // Pages are aligned for any type. The text begins with its byte order mark, which the conversion follows.
    const auto* units = reinterpret_cast<const ushort*>(mapped.Bytes().data());
    const std::size_t count = std::min<std::size_t>(mapped.Bytes().size() / 2, INT_MAX);
    const QByteArray text = QString::fromUtf16(units, static_cast<int>(count)).toUtf8();
    const auto size = static_cast<std::size_t>(text.size());
    auto copy = std::make_unique<std::uint8_t[]>(size);
    std::copy(text.begin(), text.end(), copy.get());
    return std::make_unique<Assimp::MemoryIOStream>(copy.release(), size, true);
}

/// Says whether a text holds a name that is not part of a longer one.
bool HoldsName(std::string_view text, std::string_view name)
{
    const auto belongs = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '-';
    };
    for (auto found = text.find(name); found != std::string_view::npos; found = text.find(name, found + 1)) {
        const std::string_view after = text.substr(found + name.size());
        if ((found == 0 || !belongs(text[found - 1])) && (after.empty() || !belongs(after.front())))
            return true;
    }
    return false;
}

} // namespace

AssimpFiles::AssimpFiles(const fs::path& sceneFile)
    : scene(sceneFile)
    , folder(sceneFile.parent_path().empty() ? fs::path(".") : sceneFile.parent_path())
{}

bool AssimpFiles::Exists(const char* path) const
{
    return !Find(path).empty();
}

Assimp::IOStream* AssimpFiles::Open(const char* path, const char* mode)
{
    const fs::path file = Find(path);
    if (file.empty())
        return nullptr;
    if (IsUtf16Wavefront(file))
        return InUtf8(file).release();
    return DefaultIOSystem::Open(file.c_str(), mode);
}

fs::path AssimpFiles::Find(const std::string& path) const
{
    const std::string slashed = WithSlashes(path);
    const std::string baseName = BaseName(slashed);
    fs::path found;
    if (CanBeOpened(path)) {
        found = path;
    } else if (!baseName.empty()) {
        // Loaders put the scene's folder before the name that the scene gives.
        const std::string prefix = folder.string() + "/";
        if (slashed.starts_with(prefix))
            found = lookUp.Find(folder, std::string_view(slashed).substr(prefix.size()));
        if (found.empty())
            found = lookUp.Find(folder, baseName);
        if (found.empty())
            missing.insert(baseName);
    }
    if (!found.empty())
        missing.erase(baseName);
    return found;
}

void AssimpFiles::WarnOfMissing(ImportReport& report) const
{
    if (missing.empty())
        return;
    const MappedFile mapped(scene);
    for (const std::string& name : missing) {
        // Names without an ending are folders that a loader tries.
        if (!fs::path(name).has_extension() || !HoldsName(mapped.Bytes(), name))
            continue;
        const char* const kind = EndingOf(scene) == ".obj" ? "material file " : "file ";
        report.Warn(kind + Quoted(Utf8From(name)) + " was not found");
    }
}

} // namespace Orvel::Import
