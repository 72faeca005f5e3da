#pragma once

#include "tool/import/FileLookUp.h"
#include "tool/import/ImportReport.h"

#include <assimp/DefaultIOSystem.h>

#include <filesystem>
#include <set>
#include <string>

namespace Orvel::Import
{

/// Opens the files that Assimp asks for: the scene and its companions (material libraries, buffers, further scenes).
///
/// A companion whose path is foreign or differs in case is looked for beside the scene. Wavefront files in UTF-16 are
/// handed over in UTF-8, as their loader knows no other encoding.
class AssimpFiles final : public Assimp::DefaultIOSystem
{
public:
    explicit AssimpFiles(const std::filesystem::path& sceneFile);

    [[nodiscard]] bool Exists(const char* path) const override;

    /// @return null when there is no such file; else given back through Close.
    [[nodiscard]] Assimp::IOStream* Open(const char* path, const char* mode) override;

    /// Warns of each companion that was asked for in vain. Loaders also try names of their own making: only those that
    /// stand in the scene file count.
    void WarnOfMissing(ImportReport& report) const;

private:
    /// The file meant by a path; empty, and remembered as missing, when there is none.
    std::filesystem::path Find(const std::string& path) const;

    std::filesystem::path scene;
    std::filesystem::path folder;
    // Looking up and asking whether a file exists is one thing, and Assimp asks through a constant interface.
    mutable FileLookUp lookUp;
    mutable std::set<std::string> missing; ///< base names
};

} // namespace Orvel::Import
