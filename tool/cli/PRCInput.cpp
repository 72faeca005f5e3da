#include "tool/cli/PRCInput.h"

#include "platform/prcfile/PRCReader.h"
#include "tool/cli/Errors.h"

#include <array>
#include <fstream>
#include <string_view>
#include <system_error>

namespace Orvel::Cli
{

namespace
{

bool BeginsWith(const std::string& path, std::string_view mark)
{
    std::array<char, 8> start{};
    std::ifstream(path, std::ios::binary).read(start.data(), start.size());
    return std::string_view(start.data(), start.size()).starts_with(mark);
}

} // namespace

prc::Model::PRCModel ReadModel(const std::string& path)
{
    if (BeginsWith(path, "%PDF"))
        throw Failure("it is a PDF file, not a PRC file");
    try {
        prc::Model::PRCModel model = prc::readPRCFile(path);
        if (model.structures.empty() && model.hasErrors())
            throw Failure(model.findings.back().message());
        return model;
    } catch (const std::system_error& error) {
        throw Failure(error.code().message());
    }
}

} // namespace Orvel::Cli
