#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace prc::Test
{

/// @param name of a file known to be good, "a_cube".
inline std::filesystem::path ExamplePath(const std::string& name)
{
    return std::filesystem::path(ORVEL_TEST_DATA) / "prc" / (name + ".prc");
}

inline std::vector<std::uint8_t> ExampleFile(const std::string& name)
{
    std::ifstream stream(ExamplePath(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace prc::Test
