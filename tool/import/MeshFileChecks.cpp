#include "tool/import/MeshFileChecks.h"

#include "tool/import/FileEnding.h"
#include "tool/import/ImportReport.h"
#include "tool/import/MappedFile.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cstdint>
#include <string>
#include <system_error>

namespace Orvel::Import
{

namespace
{

/// Some characters. The searches of the standard library look through the whole set anew for each character of a text,
/// which would take longer than all else here.
class CharacterSet
{
public:
    constexpr explicit CharacterSet(std::string_view members)
    {
        for (const char member : members)
            isMember[static_cast<unsigned char>(member)] = true;
    }

    [[nodiscard]] bool Has(char c) const { return isMember[static_cast<unsigned char>(c)]; }

    /// Where a text has its first character that is no member; its length when all are.
    [[nodiscard]] std::size_t FirstOutside(std::string_view text) const
    {
        const auto found = std::ranges::find_if_not(text, [this](char c) { return Has(c); });
        return static_cast<std::size_t>(found - text.begin());
    }

    /// Where a text has its first member; its length when there is none.
    [[nodiscard]] std::size_t FirstInside(std::string_view text) const
    {
        const auto found = std::ranges::find_if(text, [this](char c) { return Has(c); });
        return static_cast<std::size_t>(found - text.begin());
    }

private:
    std::array<bool, 256> isMember{};
};

constexpr CharacterSet Blanks(" \t\r\v\f");
constexpr CharacterSet CornerCharacters("0123456789-+/");

char Lower(char c)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

bool StartsWithAnyCase(std::string_view text, std::string_view lowerCase)
{
    return text.size() >= lowerCase.size() &&
           std::equal(lowerCase.begin(), lowerCase.end(), text.begin(), [](char a, char b) { return a == Lower(b); });
}

// --- STL ---

constexpr std::size_t StlHeaderBytes = 84; ///< free text and the number of triangles
constexpr std::size_t StlTriangleBytes = 50;

std::uint64_t StlTriangleCount(std::string_view bytes)
{
    std::uint64_t count = 0;
    for (std::size_t k = 4; k-- > 0;)
        count = count << 8 | static_cast<unsigned char>(bytes[80 + k]);
    return count;
}

/// Binary files may begin with "solid" too, but somewhere in their header a byte is zero.
bool IsTextStl(std::string_view bytes)
{
    const std::string_view begin = bytes.substr(0, StlHeaderBytes);
    const auto first = begin.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && StartsWithAnyCase(begin.substr(first), "solid") &&
           begin.find('\0') == std::string_view::npos;
}

/// Ends of files may be padded with blanks, zeros or the end sign of old systems.
bool EndsWithEndsolid(std::string_view bytes)
{
    const auto last = bytes.find_last_not_of(std::string_view(" \t\r\n\v\f\0\x1A", 8));
    bytes = bytes.substr(0, last == std::string_view::npos ? 0 : last + 1);
    std::string_view line = bytes.substr(bytes.find_last_of("\r\n") + 1);
    line.remove_prefix(Blanks.FirstOutside(line));
    return StartsWithAnyCase(line, "endsolid") || StartsWithAnyCase(line, "end solid");
}

// --- OFF ---

/// The next line with anything but a comment in it; empty at the end.
std::string_view TakeOffLine(std::string_view& text)
{
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        line = line.substr(0, line.find('#'));
        line.remove_prefix(Blanks.FirstOutside(line));
        if (!line.empty())
            return line;
    }
    return {};
}

// --- OBJ ---

/// The line without its keyword, split at blanks; a comment ends it.
class Fields
{
public:
    explicit Fields(std::string_view content)
        : rest(content.substr(0, content.find('#')))
    {}

    /// Empty at the end.
    std::string_view Next()
    {
        rest.remove_prefix(Blanks.FirstOutside(rest));
        const std::string_view field = rest.substr(0, Blanks.FirstInside(rest));
        rest.remove_prefix(field.size());
        return field;
    }

private:
    std::string_view rest;
};

struct ObjLine
{
    std::string_view keyword;
    std::string_view content;
};

ObjLine SplitObjLine(std::string_view line)
{
    line.remove_prefix(Blanks.FirstOutside(line));
    const std::string_view keyword = line.substr(0, Blanks.FirstInside(line));
    return {keyword, line.substr(keyword.size())};
}

void CheckObjFace(std::string_view content, std::size_t number)
{
    Fields fields(content);
    std::string_view corner = fields.Next();
    if (corner.empty())
        throw ImportError("the file is damaged: the face in line " + std::to_string(number) + " has no corners");
    for (; !corner.empty(); corner = fields.Next())
        if (corner.front() == '/' || CornerCharacters.FirstOutside(corner) < corner.size())
            throw ImportError("the file is damaged: the face in line " + std::to_string(number) + " has the corner " +
                              Quoted(corner));
}

/// A line without its line break is the last one: it may be all that a broken transfer left of it.
bool IsTorso(const ObjLine& line)
{
    const bool three = line.keyword == "v" || line.keyword == "vn" || line.keyword == "f";
    const std::size_t expected = three ? 3 : line.keyword == "vt" ? 1 : 0;
    Fields fields(line.content);
    for (std::size_t k = 0; k < expected; ++k)
        if (fields.Next().empty())
            return true;
    return false;
}

bool IsUtf16(std::string_view bytes)
{
    return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
}

struct EndingAndCheck
{
    std::string_view ending;
    void (*check)(std::string_view bytes);
};

constexpr auto Checks = std::to_array<EndingAndCheck>({{".ase", CheckBraces},
                                                       {".ifc", CheckIfc},
                                                       {".lwo", CheckLwo},
                                                       {".obj", CheckObj},
                                                       {".off", CheckOff},
                                                       {".ogex", CheckBraces},
                                                       {".ply", CheckPly},
                                                       {".stl", CheckStl}});

} // namespace

void CheckStl(std::string_view bytes)
{
    const std::uint64_t count = bytes.size() < StlHeaderBytes ? 0 : StlTriangleCount(bytes);
    if (bytes.size() >= StlHeaderBytes && bytes.size() == StlHeaderBytes + StlTriangleBytes * count)
        return;
    if (IsTextStl(bytes)) {
        if (!EndsWithEndsolid(bytes))
            throw ImportError("the file is cut short: it does not end with 'endsolid'");
        return;
    }
    if (bytes.size() < StlHeaderBytes)
        throw ImportError("the file is damaged: it is neither a text nor a binary STL file");
    const std::uint64_t present = (bytes.size() - StlHeaderBytes) / StlTriangleBytes;
    if (present < count)
        throw ImportError("the file is cut short: it holds " + std::to_string(present) + " of " +
                          std::to_string(count) + " triangles");
    throw ImportError("the file is damaged: it goes on after its " + std::to_string(count) + " triangles");
}

void CheckOff(std::string_view bytes)
{
    std::string_view counts = TakeOffLine(bytes);
    const auto keyword = std::min(counts.find("OFF"), counts.size());
    const bool isBinary = bytes.substr(0, 100).find('\0') != std::string_view::npos;
    if (isBinary || keyword == counts.size())
        return;
    // The numbers stand behind the keyword or in a line of their own.
    counts.remove_prefix(keyword + 3);
    if (Fields(counts).Next().empty())
        counts = TakeOffLine(bytes);
    Fields fields(counts);
    std::uint64_t expected = 0;
    for (int k = 0; k < 2; ++k) {
        const std::string_view field = fields.Next();
        std::uint32_t count = 0;
        if (std::from_chars(field.data(), field.data() + field.size(), count).ec != std::errc())
            throw ImportError("the file is damaged: it does not tell how many points and faces it has");
        expected += count;
    }
    std::uint64_t present = 0;
    while (present < expected && !TakeOffLine(bytes).empty())
        ++present;
    if (present < expected)
        throw ImportError("the file is cut short: it holds " + std::to_string(present) + " of " +
                          std::to_string(expected) + " points and faces");
}

void CheckBraces(std::string_view bytes)
{
    std::int64_t open = 0;
    bool isQuoted = false;
    for (const char c : bytes) {
        if (c == '"' || c == '\n')
            isQuoted = c == '"' && !isQuoted; // a text ends with its line at the latest
        else if (!isQuoted && (c == '{' || c == '}'))
            open += c == '{' ? 1 : -1;
    }
    if (open > 0)
        throw ImportError("the file is cut short: not all of its braces are closed");
}

void CheckIfc(std::string_view bytes)
{
    constexpr std::string_view Begin = "ISO-10303-21;";
    constexpr std::size_t Tail = 4096;
    if (bytes.starts_with(Begin) &&
        bytes.substr(bytes.size() - std::min(bytes.size(), Tail)).find("END-ISO-10303-21") == std::string_view::npos)
        throw ImportError("the file is cut short: it does not end with 'END-ISO-10303-21;'");
}

void CheckLwo(std::string_view bytes)
{
    constexpr std::size_t ChunkHeader = 8;
    if (bytes.size() < ChunkHeader || !bytes.starts_with("FORM"))
        return;
    std::uint64_t size = 0;
    for (std::size_t k = 4; k < ChunkHeader; ++k)
        size = size << 8 | static_cast<unsigned char>(bytes[k]);
    if (bytes.size() - ChunkHeader < size)
        throw ImportError("the file is cut short: it holds " + std::to_string(bytes.size()) + " of " +
                          std::to_string(size + ChunkHeader) + " bytes");
}

void CheckObj(std::string_view bytes)
{
    if (IsUtf16(bytes))
        return;
    bool isContinued = false;
    for (std::size_t number = 1; !bytes.empty(); ++number) {
        const auto end = bytes.find('\n');
        const std::string_view text = bytes.substr(0, end);
        const bool isLast = end == std::string_view::npos;
        bytes.remove_prefix(isLast ? bytes.size() : end + 1);
        // A backslash at the end joins a line with the next one. Such lines are rare and left to the loader.
        const bool continues = text.ends_with('\\') || text.ends_with("\\\r");
        const ObjLine line = SplitObjLine(text);
        if (!isContinued && !continues) {
            if (isLast && IsTorso(line))
                throw ImportError("the file is cut short within its last line");
            if (line.keyword == "f")
                CheckObjFace(line.content, number);
        }
        isContinued = continues;
    }
}

void CheckMeshFile(const std::filesystem::path& file)
{
    const auto found = std::ranges::find(Checks, EndingOf(file), &EndingAndCheck::ending);
    if (found != Checks.end())
        found->check(MappedFile(file).Bytes());
}

} // namespace Orvel::Import
