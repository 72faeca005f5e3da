#include "tests/support/PRCDecoder.h"

#include "tests/support/PRCDecoderSections.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace Orvel::Test
{
namespace
{

constexpr uint32_t ownVersion = 8016;
constexpr uint32_t newestVersion = 10001;
constexpr size_t sectionCount = 6;

/// Reads the plain bytes of the headers.
class HeaderReader
{
public:
    HeaderReader(std::span<const uint8_t> fileBytes, Strictness howStrict)
        : bytes(fileBytes)
        , strictness(howStrict)
    {}

    size_t Position() const { return position; }

    void Require(bool condition, const char* finding) const
    {
        if (!condition)
            throw DecodeError("header", position * 8, finding);
    }

    uint32_t Unsigned()
    {
        const std::span<const uint8_t> field = Bytes(4);
        return uint32_t{field[0]} | uint32_t{field[1]} << 8 | uint32_t{field[2]} << 16 | uint32_t{field[3]} << 24;
    }

    UniqueId Id()
    {
        UniqueId id{};
        for (uint32_t& part : id)
            part = Unsigned();
        Require(id != UniqueId{}, "unique id is zero");
        return id;
    }

    std::span<const uint8_t> Bytes(size_t count)
    {
        Require(count <= bytes.size() - position, "file ends inside a header");
        position += count;
        return bytes.subspan(position - count, count);
    }

    void SignatureAndVersions(PRCContent& content)
    {
        constexpr std::array<uint8_t, 3> signature{'P', 'R', 'C'};
        Require(std::ranges::equal(Bytes(3), signature), "signature is not PRC");
        content.minimalVersion = Unsigned();
        content.authoringVersion = Unsigned();
        Require(content.minimalVersion <= newestVersion, "file asks for a newer reader");
        const bool isOwn = content.minimalVersion == ownVersion && content.authoringVersion == ownVersion;
        Require(isOwn || strictness == Strictness::Format, "version is not 8016");
    }

private:
    std::span<const uint8_t> bytes;
    size_t position = 0;
    Strictness strictness;
};

struct Layout
{
    std::array<size_t, sectionCount> sections{};
    size_t modelFileStart = 0;
    size_t modelFileEnd = 0;
};

Layout DecodeMainHeader(HeaderReader& header, PRCContent& content)
{
    header.SignatureAndVersions(content);
    content.fileId = header.Id();
    content.applicationId = header.Id();
    header.Require(header.Unsigned() == 1, "not exactly one file structure");
    content.structureId = header.Id();
    header.Require(header.Unsigned() == 0, "reserved field is not 0");
    header.Require(header.Unsigned() == sectionCount, "not six sections");
    Layout layout;
    for (size_t& offset : layout.sections)
        offset = header.Unsigned();
    layout.modelFileStart = header.Unsigned();
    layout.modelFileEnd = header.Unsigned();
    header.Require(header.Unsigned() == 0, "uncompressed files at file level");
    return layout;
}

void DecodeStructureHeader(HeaderReader& header, PRCContent& content)
{
    PRCContent repeated;
    header.SignatureAndVersions(repeated);
    header.Require(repeated.minimalVersion == content.minimalVersion, "minimal versions differ");
    header.Require(repeated.authoringVersion == content.authoringVersion, "authoring versions differ");
    header.Require(header.Id() == content.structureId, "unique ids of the file structure differ");
    header.Require(header.Id() == content.applicationId, "unique ids of the application differ");
    const uint32_t fileCount = header.Unsigned();
    for (uint32_t i = 0; i < fileCount; ++i) {
        const std::span<const uint8_t> stored = header.Bytes(header.Unsigned());
        content.storedFiles.emplace_back(stored.begin(), stored.end());
    }
}

constexpr std::array<const char*, sectionCount> streamNames{"globals",  "tree",           "tessellation",
                                                            "geometry", "extra geometry", "model file"};

/// The six streams, inflated. Each begins where the one before it ends, and the last ends with the file.
std::array<std::vector<uint8_t>, sectionCount> InflateStreams(std::span<const uint8_t> bytes, const Layout& layout,
                                                              size_t firstOffset)
{
    std::array<std::vector<uint8_t>, sectionCount> result;
    size_t at = firstOffset;
    for (size_t i = 0; i < sectionCount; ++i) {
        const size_t announced = i + 1 < sectionCount ? layout.sections[i + 1] : layout.modelFileStart;
        if (announced != at)
            throw DecodeError(streamNames[i], 0,
                              "announced at byte " + std::to_string(announced) + ", expected " + std::to_string(at));
        size_t consumed = 0;
        try {
            result[i] = Inflate(bytes.subspan(at), consumed);
        } catch (const std::runtime_error& error) {
            throw DecodeError(streamNames[i], 0, error.what());
        }
        at += consumed;
    }
    if (layout.modelFileEnd != at || at != bytes.size())
        throw DecodeError("model file", 0, "does not end with the file");
    return result;
}

void DecodeEmptySection(PRCSectionReader& reader, EntityType type)
{
    reader.Expect(type);
    reader.ExpectUnnamedBase();
    reader.ExpectUnsigned(0, "entity count");
    reader.ExpectNoUserData();
    reader.Finish();
}

} // namespace

PRCContent DecodePRC(std::span<const uint8_t> bytes, Strictness strictness)
{
    PRCContent content;
    HeaderReader header(bytes, strictness);
    const Layout layout = DecodeMainHeader(header, content);
    header.Require(layout.sections[0] == header.Position(), "file structure does not follow the main header");
    DecodeStructureHeader(header, content);

    std::array<std::vector<uint8_t>, sectionCount> streams = InflateStreams(bytes, layout, header.Position());
    std::vector<uint32_t> identifiers;
    const auto readerOf = [&](size_t stream) {
        return PRCSectionReader(streamNames[stream], std::move(streams[stream]), strictness, identifiers);
    };
    PRCSectionReader globals = readerOf(0), tree = readerOf(1), tessellations = readerOf(2);
    PRCSectionReader geometry = readerOf(3), extraGeometry = readerOf(4), modelFile = readerOf(5);
    DecodeGlobals(globals, content);
    DecodeTessellations(tessellations, content);
    DecodeTree(tree, content, identifiers);
    DecodeEmptySection(geometry, EntityType::Geometry);
    DecodeEmptySection(extraGeometry, EntityType::ExtraGeometry);
    DecodeModelFile(modelFile, content);
    return content;
}

PRCContent DecodePRCFile(const std::filesystem::path& path, Strictness strictness)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot open " + path.string());
    const std::vector<uint8_t> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    return DecodePRC(bytes, strictness);
}

} // namespace Orvel::Test
