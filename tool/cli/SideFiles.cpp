#include "tool/cli/SideFiles.h"

#include <memory>
#include <system_error>

namespace Orvel::Cli
{

SideFiles::SideFiles(const std::string& outputName, const InputFile& inputFile, ExistingFile existingFile,
                     const std::filesystem::path& temporaryFolder)
    : folder(std::filesystem::path(outputName).parent_path())
    , input(inputFile)
    , existing(existingFile)
    , temporary(temporaryFolder)
{}

SideFiles::~SideFiles()
{
    std::error_code nothingElseToTry;
    for (const std::filesystem::path& file : created)
        std::filesystem::remove(file, nothingElseToTry);
}

void SideFiles::Deliver(const std::filesystem::path& from, const std::vector<std::string>& names,
                        const SignalWatch& signals)
{
    std::vector<std::unique_ptr<OutputTarget>> targets;
    for (const std::string& name : names) {
        const std::string place = (folder / name).string();
        targets.push_back(OutputTarget::Open(place, ".part", input, existing, temporary));
        std::error_code error;
        std::filesystem::rename(from / name, targets.back()->FileToWrite(), error);
        if (error)
            throw CannotWrite(place, error.message());
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::filesystem::path place = folder / names[i];
        std::error_code missing;
        const bool isNew = !std::filesystem::exists(place, missing);
        targets[i]->Deliver(signals);
        if (isNew)
            created.push_back(place);
    }
}

} // namespace Orvel::Cli
