#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace Orvel::Import
{

/// Finds files by names that scene files give: upper or lower case does not matter, exact names win.
class FileLookUp
{
public:
    /// @param path names with slashes between them, relative to `folder`; ".." is followed.
    /// @return a regular file; empty when there is none.
    [[nodiscard]] std::filesystem::path Find(const std::filesystem::path& folder, std::string_view path);

private:
    using Names = std::multimap<std::string, std::string>; ///< case-folded name -> names in the folder

    std::filesystem::path FindEntry(const std::filesystem::path& folder, const std::string& name);
    const Names& Listing(const std::filesystem::path& folder);

    std::map<std::filesystem::path, Names> listings;
};

/// Slashes instead of backslashes, without the begin of a URL.
[[nodiscard]] std::string WithSlashes(std::string path);

/// What stands after the last slash.
[[nodiscard]] std::string BaseName(const std::string& slashed);

} // namespace Orvel::Import
