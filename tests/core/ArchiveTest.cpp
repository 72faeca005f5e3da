#include "platform/core/COrvelArchiveReader.h"
#include "platform/core/COrvelArchiveWriter.h"
#include "platform/core/COrvelBasicCamera.h"
#include "platform/core/COrvelBasicVectorsTable.h"
#include "platform/core/COrvelDocumentsContainer.h"
#include "platform/core/COrvelID.h"
#include "platform/core/COrvelNormal.h"
#include "platform/core/COrvelUUID.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <functional>

namespace Orvel
{
namespace
{

using testing::ElementsAre;
using Bytes = std::vector<std::uint8_t>;

TEST(Archive, StoresPrimitivesInLittleEndianOrder)
{
    COrvelArchiveWriter writer;
    int number = -2;
    uint32 count = 0x01020304;
    double value = 1.5;
    bool flag = true;
    COrvelString text = "é!";
    COrvelID id(64, 7);
    ASSERT_TRUE(writer.ReadWrite(number, count, value, flag, text, id));
    EXPECT_THAT(writer.Bytes(), ElementsAre(0xfe, 0xff, 0xff, 0xff, 4, 3, 2, 1, 0, 0, 0, 0, 0, 0, 0xf8, 0x3f, 1, 3, 0,
                                            0, 0, 0xc3, 0xa9, '!', 64, 0, 0, 0, 7, 0, 0, 0, 0, 0, 0, 0));
}

/// One value of each kind, read back from every length of its bytes.
struct Values
{
    bool ArchiveReadWrite(COrvelArchiveBase& archive)
    {
        return archive.ReadWrite(number, count, value, flag, text) &&
               archive.ReadWrite(id, uuid, matrix, point, axis, camera, table);
    }

    int number = 0;
    uint32 count = 0;
    double value = 0;
    bool flag = false;
    COrvelString text;
    COrvelID id;
    COrvelUUID uuid;
    COrvelMatrix matrix;
    COrvel3DVertex point;
    COrvelNormal axis;
    COrvelBasicCamera camera;
    COrvelBasicVectorsTable table;
};

Values Filled()
{
    Values values{-5, 7, -0.0, true, "größe", {4, 1ULL << 40}, {}, {}, {2, 3, 5}, {{7, 11, 13}, {17, 19, 23}}, {}, {}};
    values.uuid.Generate();
    values.matrix = COrvelMatrix::CreateTranslation({29, 31, 37});
    values.camera.SetPosition({41, 43, 47});
    values.camera.SetCamUp(1, 2, 3);
    values.camera.SetFOV(53);
    values.camera.SetDOF(true, 59, 61);
    values.table.Assign({{67, 71, 73}, {79, 83, 89}});
    return values;
}

TEST(Archive, GivesBackWhatWasWrittenOrFailsWhenCutAnywhere)
{
    Values written = Filled();
    COrvelArchiveWriter writer;
    ASSERT_TRUE(writer.ReadWrite(written));
    const std::span<const std::uint8_t> bytes = writer.Bytes();
    COrvelArchiveReader reader(bytes);
    Values read;
    ASSERT_TRUE(reader.ReadWrite(read));
    EXPECT_TRUE(reader.IsAtEnd());
    EXPECT_EQ(read.text, written.text);
    EXPECT_EQ(read.camera.ComputeLocalToWorld(), written.camera.ComputeLocalToWorld());
    EXPECT_EQ(read.table, written.table);
    COrvelArchiveWriter again;
    ASSERT_TRUE(again.ReadWrite(read));
    EXPECT_EQ(again.Bytes(), writer.Bytes());
    for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
        COrvelArchiveReader truncated(bytes.first(cut));
        Values values;
        EXPECT_FALSE(truncated.ReadWrite(values)) << cut;
    }
}

TEST(Archive, RefusesBytesThatAreNoValueAndLeavesTheValueAlone)
{
    uint32 count = 7;
    bool flag = true;
    COrvelString text = "kept";
    COrvelID id(4, 9);
    COrvelBasicVectorsTable table({{2, 3, 5}});
    const struct
    {
        Bytes bytes;
        std::function<bool(COrvelArchiveBase&)> read;
    } cases[] = {
        {{2}, [&](COrvelArchiveBase& archive) { return archive.ReadWrite(flag); }},
        {{3, 0, 0, 0, 'a', 'b'}, [&](COrvelArchiveBase& archive) { return archive.ReadWrite(text); }},
        {{6, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0}, [&](COrvelArchiveBase& archive) { return archive.ReadWrite(id); }},
        {{0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0}, [&](COrvelArchiveBase& archive) { return archive.ReadWrite(id); }},
        {{0, 0, 0, 128, 1, 0, 0, 0, 0, 0, 0, 0}, [&](COrvelArchiveBase& archive) { return archive.ReadWrite(id); }},
        // 2^29 x 8 wraps to nothing in 32 bits.
        {{0, 0, 0, 32, 0, 0, 0, 0, 0, 0, 0, 0},
         [&](COrvelArchiveBase& archive) { return archive.ReadWriteCount(count, 8); }},
        {Bytes(30, 0xaa), [&](COrvelArchiveBase& archive) { return archive.ReadWrite(table); }},
    };
    for (const auto& [bytes, read] : cases) {
        COrvelArchiveReader reader(bytes);
        EXPECT_FALSE(read(reader)) << testing::PrintToString(bytes);
    }
    EXPECT_EQ(count, 7u);
    EXPECT_TRUE(flag);
    EXPECT_EQ(text, "kept");
    EXPECT_EQ(id, COrvelID(4, 9));
    EXPECT_EQ(table.Count(), 1u);
}

TEST(Archive, TranslatesTheIdsThatItReadsWhileTheReadingModeIsOn)
{
    COrvelID old(64, 1000001);
    const COrvelID fresh(64, 1000002);
    COrvelUUID guid;
    guid.Generate();
    COrvelDocumentsContainer* const container = COrvelDocumentsContainer::DocumentsContainer();
    container->AddTranslatedID(old, fresh);
    COrvelArchiveWriter writer;
    const auto readAgain = [&writer] {
        COrvelID read;
        COrvelArchiveReader reader(writer.Bytes());
        EXPECT_TRUE(reader.ReadWrite(read));
        return read;
    };
    {
        const COrvelIDReadingScope outer;
        ASSERT_TRUE(writer.ReadWrite(old));
        EXPECT_EQ(readAgain(), fresh) << "writing has translated nothing";
        {
            const COrvelIDReadingScope inner;
        }
        EXPECT_EQ(readAgain(), fresh) << "an inner record does not switch it off";
    }
    EXPECT_EQ(readAgain(), old);
    container->AddReplacedUUID(guid, guid);
    container->ClearReplacements();
    const COrvelIDReadingScope scope;
    EXPECT_EQ(readAgain(), old);
    EXPECT_FALSE(container->ReplacedUUID(guid).IsValid());
    EXPECT_TRUE(container->GetLinePathIDFor(17).IsDefault());
}

class ArchiveFile : public testing::Test
{
protected:
    bool Write(Values values, bool commit)
    {
        COrvelArchiveWriter writer(name);
        return writer.WriteHeader() && writer.ReadWrite(values) && commit && writer.Commit();
    }

    Orvel::Test::TemporaryFolder folder;
    COrvelString name{folder / "größe.orvelanim"};
};

TEST_F(ArchiveFile, IsReplacedOnlyByACompleteOne)
{
    ASSERT_TRUE(Write({}, true));
    const auto small = std::filesystem::file_size(name.toStdString());
    Values large = Filled();
    large.table.Assign(std::vector<COrvel3DVertex>(5000, {2, 3, 5})); // beyond every buffer
    EXPECT_FALSE(Write(large, false));
    const rlimit room{60'000, RLIM_INFINITY};
    rlimit before{};
    std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_TRUE(getrlimit(RLIMIT_FSIZE, &before) == 0 && setrlimit(RLIMIT_FSIZE, &room) == 0);
    EXPECT_FALSE(Write(large, true)) << "as on a full disk";
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_THAT(folder.Names(), ElementsAre("größe.orvelanim"));
    EXPECT_EQ(std::filesystem::file_size(name.toStdString()), small);
    namespace fs = std::filesystem;
    fs::permissions(name.toStdString(), fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    const COrvelString target = name;
    name = COrvelString(folder / "link");
    fs::create_symlink(target.toStdString(), name.toStdString());
    ASSERT_TRUE(Write(large, true));
    EXPECT_THAT(folder.Names(), ElementsAre("größe.orvelanim", "link"));
    EXPECT_TRUE(fs::is_symlink(name.toStdString()));
    EXPECT_EQ(fs::status(target.toStdString()).permissions(),
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);

    COrvelArchiveReader reader(name);
    Values read;
    ASSERT_TRUE(reader.ReadHeader() && reader.ReadWrite(read));
    EXPECT_TRUE(reader.IsAtEnd());
    EXPECT_EQ(read.table, large.table);
}

TEST_F(ArchiveFile, CannotBeWrittenWhereThereIsNoRoom)
{
    for (const char* const target : {"/dev/full", "/no/such/folder/file"}) {
        name = target;
        EXPECT_FALSE(Write(Filled(), true)) << target;
    }
    COrvelArchiveReader missing(name);
    EXPECT_FALSE(missing.ReadHeader());
}

TEST_F(ArchiveFile, NamesItsLayout)
{
    COrvelDocumentsContainer* const container = COrvelDocumentsContainer::DocumentsContainer();
    constexpr int newest = COrvelArchiveBase::newestVersion;
    for (const auto& [version, isReadable] : {std::pair(10003, true), {newest, true}, {newest + 1, false}, {-1, false}})
    {
        COrvelArchiveWriter writer;
        writer.SetVersion(version);
        writer.SetExtendedRecords(false);
        ASSERT_TRUE(writer.WriteHeader());
        COrvelArchiveReader reader(writer.Bytes());
        ASSERT_EQ(reader.ReadHeader(), isReadable) << version;
        EXPECT_EQ(reader.Version(), isReadable ? version : newest);
        EXPECT_EQ(reader.HasExtendedRecords(), !isReadable);
        EXPECT_EQ(container->LastReadDocumentVersion(), isReadable ? version : newest);
    }
    const Bytes text(40, 'O');
    COrvelArchiveReader other(text);
    EXPECT_FALSE(other.ReadHeader());
}

} // namespace
} // namespace Orvel
