#include "tool/import/FileLookUp.h"

#include <QString>

#include <algorithm>
#include <system_error>
#include <utility>
#include <vector>

namespace Orvel::Import
{

namespace
{

namespace fs = std::filesystem;

std::string CaseFolded(const std::string& utf8)
{
    return QString::fromStdString(utf8).toCaseFolded().toStdString();
}

bool IsFile(const fs::path& path)
{
    std::error_code ignored;
    return fs::is_regular_file(path, ignored);
}

} // namespace

fs::path FileLookUp::Find(const fs::path& folder, std::string_view path)
{
    fs::path found = folder;
    while (!path.empty()) {
        const auto end = std::min(path.find('/'), path.size());
        const std::string name(path.substr(0, end));
        path.remove_prefix(std::min(end + 1, path.size()));
        if (name.empty() || name == ".")
            continue;
        found = name == ".." ? found / name : FindEntry(found, name);
        if (found.empty())
            return {};
    }
    return IsFile(found) ? found : fs::path();
}

fs::path FileLookUp::FindEntry(const fs::path& folder, const std::string& name)
{
    const auto [first, last] = Listing(folder).equal_range(CaseFolded(name));
    if (first == last)
        return {};
    const auto exact = std::find_if(first, last, [&](const auto& entry) { return entry.second == name; });
    return folder / (exact != last ? exact : first)->second;
}

const FileLookUp::Names& FileLookUp::Listing(const fs::path& folder)
{
    const auto [entry, isNew] = listings.try_emplace(folder);
    if (!isNew)
        return entry->second;
    std::error_code error;
    std::vector<std::string> names;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error))
        names.push_back(it->path().filename().string());
    // The order of a directory is chance; equal input is to find equal files.
    std::ranges::sort(names);
    for (std::string& name : names)
        entry->second.emplace(CaseFolded(name), std::move(name));
    return entry->second;
}

std::string WithSlashes(std::string path)
{
    std::ranges::replace(path, '\\', '/');
    constexpr std::string_view Url = "file://";
    if (path.starts_with(Url)) {
        path.erase(0, Url.size());
        // A drive letter follows the slash of an empty host name.
        if (path.size() > 2 && path[0] == '/' && path[2] == ':')
            path.erase(0, 1);
    }
    return path;
}

std::string BaseName(const std::string& slashed)
{
    return slashed.substr(slashed.rfind('/') + 1);
}

} // namespace Orvel::Import
