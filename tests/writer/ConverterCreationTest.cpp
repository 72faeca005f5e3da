#include "animation/COrvelKeyFrameManager.h"
#include "mapping/COrvelPRCMapper.h"
#include "platform/core/COrvelDocument.h"
#include "prc/COrvelPRCHandler.h"
#include "support/TemporaryFolder.h"
#include "writer/COrvelPRCWriter.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

namespace
{

/// The next allocation of this many bytes fails; 0: none does.
std::size_t failingSize = 0;

} // namespace

// Not inlined: the compiler would see malloc and free meet without new and delete between them.
[[gnu::noinline]] void* operator new(std::size_t size)
{
    if (size != failingSize || failingSize == 0) {
        if (void* const memory = std::malloc(size))
            return memory;
    }
    failingSize = 0;
    throw std::bad_alloc();
}

[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return std::malloc(size);
}

[[gnu::noinline]] void operator delete(void* memory) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace Orvel::Test
{
namespace
{

TEST(ConverterCreation, LeavesAWriterThatAnswersFalseWhenItFails)
{
    const TemporaryFolder folder;
    const COrvelString target((folder.Path() / "out.prc").c_str());
    COrvelDocument document;
    COrvelPRCMapper mapper;

    failingSize = sizeof(COrvelPRCHandler);
    COrvelPRCWriter writer;
    ASSERT_EQ(failingSize, 0U) << "the creation was tried";
    EXPECT_FALSE(writer.Export(&document, target, nullptr, nullptr, nullptr, nullptr, COrvelUnit()));
    EXPECT_FALSE(writer.ExportToMemory(&document, target, nullptr, nullptr, nullptr));
    writer.SetMaximumTextureSize(77);
    writer.SetPRCMapper(&mapper);
    auto* const manager = new COrvelKeyFrameManager();
    writer.SetKeyFrameManager(manager);
    EXPECT_EQ(COrvelKeyFrameManager::Instance(), manager) << "installing it takes no converter";
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));

    writer.InitializeHandler();
    EXPECT_EQ(COrvelPRCHandler::Instance()->maximumTextureSize, 1024) << "nothing was stored without a converter";
    EXPECT_EQ(COrvelPRCHandler::Instance()->mapper, nullptr);
    EXPECT_TRUE(writer.Export(&document, target, nullptr, nullptr, nullptr, nullptr, COrvelUnit()));
    EXPECT_TRUE(std::filesystem::exists(folder.Path() / "out.prc"));
}

} // namespace
} // namespace Orvel::Test
