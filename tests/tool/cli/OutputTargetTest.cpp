#include "tool/cli/OutputTarget.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tool/cli/FileContent.h"
#include "tool/cli/Errors.h"
#include "tool/cli/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <thread>

namespace Orvel::Cli
{
namespace
{

using ScratchFolder = Test::TemporaryFolder; // the program has one of the same name
using Test::ReadFile;
using Test::WriteFile;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Targets : public testing::Test
{
protected:
    Targets()
    {
        WriteFile(inputFolder / "scene.glb", "scene");
        input = ExamineInput(inputFolder / "scene.glb");
    }

    std::unique_ptr<OutputTarget> Open(const std::string& name)
    {
        return OutputTarget::Open(name, ".prc", input, existing, temporary.Path());
    }

    /// As the export does: opens the target, writes the file, brings it there.
    std::uint64_t Write(const std::string& name, const std::string& content)
    {
        const auto target = Open(name);
        WriteFile(target->FileToWrite(), content);
        return target->Deliver(signals);
    }

    std::string Refusal(const std::string& name)
    {
        try {
            Write(name, "new");
        } catch (const Failure& failure) {
            return failure.what();
        }
        return "(written)";
    }

    ScratchFolder inputFolder;
    ScratchFolder folder;
    TemporaryFolder temporary;
    SignalWatch signals;
    InputFile input;
    ExistingFile existing = ExistingFile::Replace;
};

mode_t ModeOf(const std::string& path)
{
    struct stat status
    {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777U;
}

TEST_F(Targets, FilesEndInTheFolderAndUnderTheNameThatWereAskedFor)
{
    const std::vector<std::string> names{
        "out.prc", "out",      "out.", "a.b.c.prc", ".hidden",   "two words.prc", "größe.prc",
        "日本語",  "a\\b.prc", "\\",   "-dash.prc", "new\nline", "\xff\xfe.prc",  std::string(255, 'x'),
    };
    const std::string start = std::filesystem::current_path();
    for (const std::string sub : {"", "sub/", "größe/", "a\\b/", "a.b/", "\xff/", "./sub/../other/"}) {
        const ScratchFolder fresh;
        std::filesystem::current_path(fresh.Path());
        std::filesystem::create_directories(sub + "sub/.");
        for (const std::string& name : names) {
            EXPECT_EQ(Write(sub + name, "content"), 7U) << sub << name;
            EXPECT_EQ(ReadFile(sub + name), "content") << sub << name;
        }
        const std::filesystem::directory_iterator all(std::filesystem::current_path() / sub);
        EXPECT_EQ(std::distance(begin(all), end(all)), std::ssize(names) + 1) << "nothing else is left in " << sub;
        std::filesystem::current_path(start);
    }
}

TEST_F(Targets, AnExistingFileStaysUntilTheNewOneIsComplete)
{
    const std::string name = folder / "out.prc";
    WriteFile(name, "old");
    {
        const auto target = Open(name);
        WriteFile(target->FileToWrite(), "half");
        EXPECT_EQ(ReadFile(name), "old");
    }
    EXPECT_EQ(ReadFile(name), "old");
    EXPECT_THAT(folder.Names(), ElementsAre("out.prc"));
    Write(name, "new");
    EXPECT_EQ(ReadFile(name), "new");
    EXPECT_THAT(folder.Names(), ElementsAre("out.prc"));
}

TEST_F(Targets, KeepsTheModeOfAnExistingFileAndFollowsTheMaskForNewOnes)
{
    ::umask(027);
    Write(folder / "new.prc", "new");
    EXPECT_EQ(ModeOf(folder / "new.prc"), 0640U);

    WriteFile(folder / "shared.prc", "old");
    ::chmod((folder / "shared.prc").c_str(), 0664);
    Write(folder / "shared.prc", "new");
    EXPECT_EQ(ModeOf(folder / "shared.prc"), 0664U);
}

TEST_F(Targets, FollowsLinksAndLeavesThemLinks)
{
    std::filesystem::create_directory(folder / "real");
    WriteFile(folder / "real/file.prc", "old");
    std::filesystem::create_symlink("real/file.prc", folder / "first");
    std::filesystem::create_symlink("first", folder / "second");
    Write(folder / "second", "new");
    EXPECT_EQ(ReadFile(folder / "real/file.prc"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "first"));

    std::filesystem::create_symlink(folder / "real/later.prc", folder / "dangling");
    Write(folder / "dangling", "later");
    EXPECT_EQ(ReadFile(folder / "real/later.prc"), "later");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "dangling"));

    std::filesystem::create_symlink("loop", folder / "loop");
    EXPECT_THAT(Refusal(folder / "loop"), HasSubstr("symbolic links"));
}

TEST_F(Targets, RefusesWhatCannotBeWrittenBeforeAnyWork)
{
    WriteFile(folder / "file", "old");
    std::filesystem::create_directory(folder / "sub");
    EXPECT_THROW(Open(folder / "sub"), Failure);
    EXPECT_THAT(Refusal(folder / "sub"), HasSubstr("it is a folder"));
    EXPECT_THAT(Refusal(folder / "none/out.prc"), HasSubstr("No such file or directory"));
    EXPECT_THAT(Refusal(folder / "none/"), HasSubstr("No such file or directory"));
    EXPECT_THAT(Refusal(folder / "file/out.prc"), HasSubstr("Not a directory"));
    EXPECT_THAT(Refusal(folder / std::string(256, 'x')), HasSubstr("name too long"));
    EXPECT_THAT(folder.Names(), ElementsAre("file", "sub"));
}

TEST_F(Targets, RefusesFilesAndFoldersWithoutPermission)
{
    WriteFile(folder / "readonly.prc", "old");
    ::chmod((folder / "readonly.prc").c_str(), 0444);
    std::filesystem::create_directory(folder / "locked");
    ::chmod((folder / "locked").c_str(), 0555);
    ::chmod(folder.Path().c_str(), 0777);
    constexpr uid_t Nobody = 65534;
    if (::geteuid() == 0) {
        // The administrator may write everything.
        ASSERT_EQ(::seteuid(Nobody), 0);
    }
    EXPECT_THAT(Refusal(folder / "readonly.prc"), HasSubstr("Permission denied"));
    EXPECT_THAT(Refusal(folder / "locked/out.prc"), HasSubstr("Permission denied"));
    ASSERT_EQ(::seteuid(::getuid()), 0);
    EXPECT_EQ(ReadFile(folder / "readonly.prc"), "old");
    EXPECT_TRUE(std::filesystem::is_empty(folder / "locked"));
}

TEST_F(Targets, NeverOverwritesTheInput)
{
    std::filesystem::create_symlink(input.path, folder / "symbolic.prc");
    std::filesystem::create_hard_link(input.path, folder / "hard.prc");
    for (const std::string& name : {input.path, folder / "symbolic.prc", folder / "hard.prc"})
        EXPECT_THAT(Refusal(name), HasSubstr("it is the input file")) << name;
    EXPECT_EQ(ReadFile(input.path), "scene");
}

TEST_F(Targets, KeepsAnExistingFileWhenTold)
{
    existing = ExistingFile::Keep;
    WriteFile(folder / "out.prc", "old");
    EXPECT_THAT(Refusal(folder / "out.prc"), HasSubstr("exists already"));

    // Somebody else may be faster.
    const auto target = Open(folder / "race.prc");
    WriteFile(target->FileToWrite(), "new");
    WriteFile(folder / "race.prc", "theirs");
    EXPECT_THROW(target->Deliver(signals), Failure);
    EXPECT_EQ(ReadFile(folder / "race.prc"), "theirs");

    Write(folder / "fresh.prc", "fresh");
    EXPECT_EQ(ReadFile(folder / "fresh.prc"), "fresh");
    EXPECT_EQ(Write("/dev/null", "gone"), 4U);
}

TEST_F(Targets, WritesDevicesAndPipesDirectly)
{
    EXPECT_EQ(Write("/dev/null", "gone"), 4U);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    EXPECT_THAT(Refusal("/dev/full"), HasSubstr("No space left"));

    const std::string pipe = folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const std::string content(300000, 'x');
    std::string received;
    std::thread reader([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(120)); // the writer has to wait for a reader
        received = ReadFile(pipe);
    });
    EXPECT_EQ(Write(pipe, content), content.size());
    reader.join();
    EXPECT_EQ(received, content);
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));

    const auto target = Open(pipe);
    WriteFile(target->FileToWrite(), "content");
    ::kill(::getpid(), SIGTERM);
    EXPECT_THROW(target->Deliver(signals), Interrupted) << "a signal ends the wait for a reader";
}

TEST(TemporaryFolders, ArePrivateAndDisappearWithTheirContent)
{
    const ScratchFolder parent;
    ::setenv("TMPDIR", parent.Path().c_str(), 1);
    {
        const TemporaryFolder temporary;
        EXPECT_EQ(temporary.Path().parent_path(), parent.Path());
        EXPECT_EQ(ModeOf(temporary.Path().string()), 0700U);
        std::filesystem::create_directories(temporary.Path() / "deep/deeper");
        WriteFile((temporary.Path() / "deep/deeper/file").string(), "x");
    }
    EXPECT_THAT(parent.Names(), IsEmpty());
    ::setenv("TMPDIR", "/no/such/folder", 1);
    EXPECT_THROW(TemporaryFolder(), Failure);
    ::unsetenv("TMPDIR");
}

TEST(Inputs, AreRefusedWithTheReason)
{
    const ScratchFolder folder;
    WriteFile(folder / "empty.glb", "");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    const auto reason = [&](const std::string& name) -> std::string {
        try {
            return std::to_string(ExamineInput(folder / name).size);
        } catch (const Failure& failure) {
            return failure.what();
        }
    };
    EXPECT_THAT(reason("missing.glb"), HasSubstr("missing.glb': No such file or directory"));
    EXPECT_THAT(reason("empty.glb"), HasSubstr("the file is empty"));
    EXPECT_THAT(reason("."), HasSubstr("it is a folder"));
    EXPECT_THAT(reason("pipe"), HasSubstr("not a regular file"));
}

} // namespace
} // namespace Orvel::Cli
