#pragma once

#include "tool/cli/InputFile.h"
#include "tool/cli/OutputTarget.h"

#include <filesystem>
#include <string>
#include <vector>

namespace Orvel::Cli
{

/// Files that belong beside an output and get their places together with it.
class SideFiles
{
public:
    /// @param outputName  of the output that they belong to.
    /// @param inputFile   never overwritten.
    /// @param temporaryFolder for what cannot be written beside the output.
    SideFiles(const std::string& outputName, const InputFile& inputFile, ExistingFile existingFile,
              const std::filesystem::path& temporaryFolder);
    SideFiles(const SideFiles&) = delete;
    SideFiles& operator=(const SideFiles&) = delete;

    /// Removes what was delivered to names that were free before, unless Keep() was called.
    ~SideFiles();

    /// Brings finished files to their places beside the output. All places are checked before the first is filled.
    ///
    /// @param from  folder with the files, as a rule beside the output; they are moved out of it.
    /// @param names of the files there and beside the output.
    /// @throws Failure, Interrupted
    void Deliver(const std::filesystem::path& from, const std::vector<std::string>& names, const SignalWatch& signals);

    /// The output is in its place: the files stay.
    void Keep() { created.clear(); }

private:
    std::filesystem::path folder;
    const InputFile& input;
    ExistingFile existing;
    std::filesystem::path temporary;
    std::vector<std::filesystem::path> created;
};

} // namespace Orvel::Cli
