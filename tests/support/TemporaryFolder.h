#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace Orvel::Test
{

/// A fresh folder for one test, removed with everything in it.
class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "orvel-test-XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            throw std::runtime_error("cannot make a temporary folder");
        path = pattern;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    [[nodiscard]] const std::filesystem::path& Path() const { return path; }

    /// The path of something in the folder; `name` is relative, in UTF-8.
    [[nodiscard]] std::string operator/(std::string_view name) const { return (path / name).string(); }

    /// Names of everything in the folder, sorted.
    [[nodiscard]] std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    /// Writes a file, and makes the folders on the way; `name` is relative, in UTF-8. @return its path.
    std::filesystem::path Write(const std::filesystem::path& name, std::string_view content) const
    {
        const std::filesystem::path file = path / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << content;
        return file;
    }

private:
    std::filesystem::path path;
};

} // namespace Orvel::Test
