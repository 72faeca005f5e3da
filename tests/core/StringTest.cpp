#include "platform/core/COrvelString.h"
#include "platform/core/FileNameEncoding.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <clocale>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

namespace Orvel
{
namespace
{

template <typename T>
concept AppendableToText = requires(COrvelString text, T value)
{
    text + value;
};

TEST(Text, ConvertsBetweenUtf8AndCodePointsWhateverTheLocale)
{
    // U+00F6, U+00DF, U+4E2D and, beyond 16 bits, U+1D11E.
    const std::string utf8 = "gr\xC3\xB6\xC3\x9F"
                             "e \xE4\xB8\xAD\xF0\x9D\x84\x9E";
    const wchar_t wide[] = {L'g', L'r', 0xF6, 0xDF, L'e', L' ', 0x4E2D, 0x1D11E, 0};

    for (const char* locale : {"C", "POSIX", "C.UTF-8", "de_DE.ISO-8859-1"}) {
        std::setlocale(LC_ALL, locale); // an unknown one leaves the last in place
        const COrvelString fromNarrow(utf8.c_str());
        const COrvelString fromWide(wide);
        EXPECT_EQ(fromWide.toStdString(), utf8) << locale;
        EXPECT_EQ(std::wstring(fromNarrow.WideCString()), std::wstring(wide)) << locale;
        EXPECT_EQ(fromNarrow, fromWide) << locale;
        EXPECT_EQ(std::string(fromWide.CString()), utf8) << locale;
    }
    std::setlocale(LC_ALL, "C");
}

TEST(Text, KeepsByteOrderMarksAndBytesThatAreNoUtf8)
{
    const COrvelString marked("\xEF\xBB\xBFx");
    EXPECT_EQ(std::wstring(marked.WideCString()), std::wstring({0xFEFF, L'x'}));
    EXPECT_EQ(COrvelString(marked.WideCString()), marked);

    const COrvelString latin1("caf\xE9.png");
    EXPECT_EQ(latin1.toStdString(), "caf\xE9.png");
    EXPECT_EQ(std::wstring(latin1.WideCString()), std::wstring({L'c', L'a', L'f', 0xFFFD, L'.', L'p', L'n', L'g'}));
}

TEST(Text, TakesNullForEmpty)
{
    const char* const noText = nullptr;
    const wchar_t* const noWideText = nullptr;
    EXPECT_TRUE(COrvelString(noText).IsEmpty());
    EXPECT_TRUE(COrvelString(noWideText).IsEmpty());
    EXPECT_STREQ(COrvelString().WideCString(), L"");
    EXPECT_STREQ(COrvelString().CString(), "");
}

TEST(Text, WideFormFollowsEveryChange)
{
    COrvelString name("a/b.c");
    const auto wideNow = [&name] { return std::wstring(name.WideCString()); };
    EXPECT_EQ(wideNow(), L"a/b.c");
    name += "\\d.e";
    EXPECT_EQ(wideNow(), L"a/b.c\\d.e");
    name.ReplaceSlashWithSystemSlash();
    EXPECT_EQ(wideNow(), L"a/b.c/d.e");
    name.RemoveExt();
    EXPECT_EQ(wideNow(), L"a/b.c/d");
    name.RemovePath();
    EXPECT_EQ(wideNow(), L"d");
    name = "other";
    EXPECT_EQ(wideNow(), L"other");
}

TEST(Text, WritesNumbersInDecimalAndRefusesStrayOnes)
{
    EXPECT_EQ(COrvelString::FromInt(std::numeric_limits<int>::min()), "-2147483648");
    EXPECT_EQ(COrvelString(65), "65");
    EXPECT_EQ(COrvelString(0), "0") << "the number, not the null pointer";
    EXPECT_EQ("frm" + COrvelString::FromInt(7) + ".", "frm7.");
    static_assert(AppendableToText<const char*> && AppendableToText<COrvelString>);
    static_assert(!AppendableToText<int> && !AppendableToText<char> && !AppendableToText<bool>);
    static_assert(!std::is_convertible_v<int, COrvelString>);
    static_assert(!std::is_constructible_v<COrvelString, char> && !std::is_constructible_v<COrvelString, bool>);
    static_assert(!std::is_constructible_v<COrvelString, std::nullptr_t>);
}

TEST(Text, ComparesCodePointsExactly)
{
    // In UTF-16 units the last two would change places.
    const std::vector<COrvelString> rising = {"", "A", "Z", "a", "a ", "aa", "\xEF\xBD\x9E", "\xF0\x9D\x84\x9E"};
    for (std::size_t i = 0; i < rising.size(); ++i)
        for (std::size_t j = 0; j < rising.size(); ++j) {
            EXPECT_EQ(rising[i] < rising[j], i < j) << i << ' ' << j;
            EXPECT_EQ(rising[i] == rising[j], i == j) << i << ' ' << j;
        }
}

TEST(FileNames, SplitAtBothSeparators)
{
    const struct
    {
        const char *name, *folder, *base, *stem, *extension;
    } cases[] = {
        {"/tmp/x/out.prc", "/tmp/x/", "out.prc", "out", "prc"},
        {"C:\\x\\out.prc", "C:\\x\\", "out.prc", "out", "prc"},
        {"C:\\x/y\\out", "C:\\x/y\\", "out", "out", ""},
        {"a.b/c.d\\out", "a.b/c.d\\", "out", "out", ""},
        {"out.prc", "", "out.prc", "out", "prc"},
        {"a.b.prc", "", "a.b.prc", "a.b", "prc"},
        {"/x/out.", "/x/", "out.", "out", ""},
        {"/x/.hidden", "/x/", ".hidden", "", "hidden"},
        {"/x.y/", "/x.y/", "", "", ""},
        {"", "", "", "", ""},
        {"\xC3\xA4/\xE4\xB8\xAD.\xC3\xB6", "\xC3\xA4/", "\xE4\xB8\xAD.\xC3\xB6", "\xE4\xB8\xAD", "\xC3\xB6"},
    };
    for (const auto& wanted : cases) {
        SCOPED_TRACE(wanted.name);
        const COrvelString name(wanted.name);
        EXPECT_EQ(name.Path('\\'), wanted.folder);
        EXPECT_EQ(name.Path('/'), wanted.folder);
        EXPECT_EQ(name.Extension(), wanted.extension);
        COrvelString stripped = name;
        stripped.RemovePath();
        EXPECT_EQ(stripped, wanted.base);
        stripped.RemoveExt();
        EXPECT_EQ(stripped, wanted.stem);
        COrvelString withFolder = name;
        withFolder.RemoveExt();
        EXPECT_EQ(withFolder, COrvelString(wanted.folder) + wanted.stem);
    }
}

class EightBitFileNames : public testing::Test
{
protected:
    ~EightBitFileNames() override { SetEightBitFileNameEncoding(FileNameEncoding::Utf8); }

    [[nodiscard]] COrvelString InFolder(const char* name) const { return COrvelString((folder / name).c_str()); }

    static std::string ContentsOf(const std::filesystem::path& file)
    {
        std::ifstream stream(file);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    const Orvel::Test::TemporaryFolder temporary;
    const std::filesystem::path folder = temporary.Path();
};

TEST_F(EightBitFileNames, HoldEveryCharacterByDefault)
{
    const COrvelString name("\xC3\xA4/\xF0\x9D\x84\x9E.prc");
    EXPECT_FALSE(name.HasUnicode());
    EXPECT_EQ(name.GetAnsiFileName(), name);
}

TEST_F(EightBitFileNames, OfAFolderInAsciiOpenTheFilesInIt)
{
    std::filesystem::create_directory(folder / "\xC3\xA4 \xE4\xB8\xAD");
    std::filesystem::create_directory(folder / "\xC3\xB6");
    SetEightBitFileNameEncoding(FileNameEncoding::Ascii);
    const COrvelString name = InFolder("\xC3\xA4 \xE4\xB8\xAD/");
    ASSERT_TRUE(name.HasUnicode());

    const COrvelString alias = name.GetAnsiFileName();
    ASSERT_FALSE(alias.HasUnicode()) << alias.CString();
    EXPECT_EQ(alias.toStdString().back(), '/');
    EXPECT_EQ(name.GetAnsiFileName(), alias);
    EXPECT_NE(InFolder("\xC3\xB6/").GetAnsiFileName(), alias);

    std::ofstream((alias + "out.prc").toStdString()) << "written";
    EXPECT_EQ(ContentsOf(folder / "\xC3\xA4 \xE4\xB8\xAD" / "out.prc"), "written");
    std::filesystem::rename((alias + "out.prc").toStdString(), (alias + "\xC3\xA4.prc").toStdString());
    EXPECT_EQ(ContentsOf(folder / "\xC3\xA4 \xE4\xB8\xAD" / "\xC3\xA4.prc"), "written");
}

TEST_F(EightBitFileNames, InAsciiNeverNameAFolderThatTookThePlaceOfAnother)
{
    SetEightBitFileNameEncoding(FileNameEncoding::Ascii);
    const COrvelString name = InFolder("\xC3\xA4/");
    std::filesystem::create_directory(name.toStdString());
    const COrvelString before = name.GetAnsiFileName();
    std::filesystem::remove(name.toStdString());
    std::filesystem::create_directory(name.toStdString());

    const COrvelString after = name.GetAnsiFileName();
    EXPECT_NE(after, before);
    std::ofstream((after + "x").toStdString()) << "new";
    EXPECT_EQ(ContentsOf(folder / "\xC3\xA4" / "x"), "new");
}

TEST_F(EightBitFileNames, InAsciiLeaveAloneWhatFitsOrDoesNotExist)
{
    SetEightBitFileNameEncoding(FileNameEncoding::Ascii);
    EXPECT_EQ(InFolder("").GetAnsiFileName(), InFolder(""));
    EXPECT_EQ(InFolder("\xC3\xA4/").GetAnsiFileName(), InFolder("\xC3\xA4/"));
    EXPECT_FALSE(COrvelString("\x7F~ plain").HasUnicode());
    EXPECT_TRUE(COrvelString("\xC2\x80").HasUnicode());
}

} // namespace
} // namespace Orvel
