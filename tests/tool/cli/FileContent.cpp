#include "tests/tool/cli/FileContent.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace Orvel::Test
{

void WriteFile(const std::string& path, std::string_view bytes)
{
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush())
        throw std::runtime_error("cannot write " + path);
}

std::string ReadFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return file ? std::string(std::istreambuf_iterator<char>(file), {}) : "(missing)";
}

} // namespace Orvel::Test
