#pragma once

#include "tests/support/TemporaryFolder.h"
#include "tool/import/AssimpReader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace Orvel::Import
{

/// Reads files that a test writes.
class AssimpTest : public testing::Test
{
protected:
    ImportedScene Read(const std::string& name, std::string_view content)
    {
        return ReadWithAssimp(folder.Write(name, content), report);
    }

    /// A file of tests/data/import.
    ImportedScene ReadExample(const std::string& name)
    {
        return ReadWithAssimp(std::filesystem::path(ORVEL_TEST_DATA) / "import" / name, report);
    }

    /// The message with which the file is refused.
    std::string ErrorOf(const std::string& name, std::string_view content)
    {
        try {
            (void)Read(name, content);
        } catch (const ImportError& error) {
            return error.what();
        }
        return "no error";
    }

    Orvel::Test::TemporaryFolder folder;
    ImportReport report;
};

} // namespace Orvel::Import
