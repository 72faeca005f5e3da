#include "platform/prcfile/HeaderReader.h"

#include <algorithm>
#include <string>

namespace prc
{

namespace
{

/// The highest version that is known to be laid out as this reader reads.
constexpr std::uint32_t newestFormat = 10001;

/// Takes little-endian numbers from a file. Past the end it gives zeros, and ok() is false from then on.
class ByteReader
{
public:
    ByteReader(std::span<const std::uint8_t> readBytes, std::uint64_t start)
        : bytes(readBytes)
        , at(start)
        , good(start <= readBytes.size())
    {}

    [[nodiscard]] bool ok() const { return good; }
    [[nodiscard]] std::uint64_t position() const { return at; }

    std::uint32_t readNumber()
    {
        const std::span<const std::uint8_t> four = readBytes(4);
        if (four.empty())
            return 0;
        return static_cast<std::uint32_t>(four[0] | four[1] << 8 | four[2] << 16) | static_cast<std::uint32_t>(four[3])
                                                                                        << 24;
    }

    UniqueId readUniqueId()
    {
        UniqueId id{};
        for (std::uint32_t& number : id)
            number = readNumber();
        return id;
    }

    bool readSignature() { return std::ranges::equal(readBytes(signature.size()), signature); }

    /// @return nothing when there are not so many left.
    std::span<const std::uint8_t> readBytes(std::uint64_t count)
    {
        if (!good || count > bytes.size() - at) {
            good = false;
            return {};
        }
        const std::span<const std::uint8_t> read =
            bytes.subspan(static_cast<std::size_t>(at), static_cast<std::size_t>(count));
        at += count;
        return read;
    }

private:
    std::span<const std::uint8_t> bytes;
    std::uint64_t at;
    bool good;
};

bool readOffsets(ByteReader& bytes, Model::FileStructure& structure, Findings& findings)
{
    structure.id = bytes.readUniqueId();
    bytes.readNumber(); // reserved
    const std::uint32_t count = bytes.readNumber();
    if (bytes.ok() && count != sectionCount)
        findings.note("a file structure states " + std::to_string(count) + " sections, expected 6");
    for (std::uint32_t section = 0; section < count && bytes.ok(); ++section) {
        const std::uint32_t offset = bytes.readNumber();
        if (section < sectionCount)
            structure.sections[section].offset = offset;
    }
    return bytes.ok();
}

} // namespace

bool readMainHeader(std::span<const std::uint8_t> file, const ReadLimits& limits, Model::PRCModel& model)
{
    Findings findings(model, "main header");
    ByteReader bytes(file, 0);
    model.fileSize = file.size();
    if (!bytes.readSignature()) {
        findings.errorAtByte(0, "expected the signature 'PRC': this is not a PRC file");
        return false;
    }
    model.minimalVersionForRead = bytes.readNumber();
    model.authoringVersion = bytes.readNumber();
    model.id = bytes.readUniqueId();
    model.applicationId = bytes.readUniqueId();
    const std::uint32_t count = bytes.readNumber();
    if (bytes.ok() && count > limits.fileStructures) {
        findings.errorAtByte(bytes.position() - 4, "expected at most " + std::to_string(limits.fileStructures) +
                                                       " file structures, found " + std::to_string(count));
        return false;
    }
    if (model.minimalVersionForRead > newestFormat)
        findings.note("the file asks for version " + std::to_string(model.minimalVersionForRead) +
                      " of the format, known are those up to " + std::to_string(newestFormat));
    for (std::uint32_t number = 0; number < count && bytes.ok(); ++number) {
        Model::FileStructure structure;
        if (readOffsets(bytes, structure, findings))
            model.structures.push_back(std::move(structure));
    }
    model.modelFile.offset = bytes.readNumber();
    const std::uint32_t end = bytes.readNumber();
    const std::uint32_t files = bytes.readNumber(); // of the whole file: nothing is known to store any
    for (std::uint32_t number = 0; number < files && bytes.ok(); ++number)
        bytes.readBytes(bytes.readNumber());
    model.headerBytes = bytes.position();
    if (!bytes.ok()) {
        findings.errorAtByte(file.size(), "the file ends inside its main header");
        return false;
    }
    if (end != file.size())
        findings.note("the file states a size of " + std::to_string(end) + " bytes and has " +
                      std::to_string(file.size()));
    return true;
}

void readStructureHeader(std::span<const std::uint8_t> file, Model::FileStructure& structure, ReadBudget& budget,
                         Findings& findings)
{
    Model::SectionSummary& section = structure.sections[static_cast<std::size_t>(Section::Header)];
    if (section.offset == 0) {
        findings.error("expected a header: the main header states none");
        return;
    }
    section.state = Model::SectionState::Partial;
    ByteReader bytes(file, section.offset);
    if (!bytes.readSignature()) {
        section.state = Model::SectionState::Damaged;
        findings.errorAtByte(section.offset, "expected the signature 'PRC' of a file structure");
        return;
    }
    structure.minimalVersionForRead = bytes.readNumber();
    structure.authoringVersion = bytes.readNumber();
    if (bytes.readUniqueId() != structure.id && bytes.ok())
        findings.note("the id in the header of the file structure differs from that in the main header");
    structure.applicationId = bytes.readUniqueId();
    const std::uint32_t count = bytes.readNumber();
    for (std::uint32_t number = 0; number < count && bytes.ok(); ++number) {
        const std::uint32_t size = bytes.readNumber();
        const std::span<const std::uint8_t> picture = bytes.readBytes(size);
        if (!bytes.ok())
            break;
        if (!budget.take(size + sizeof(std::vector<std::uint8_t>))) {
            findings.errorAtByte(bytes.position(), "the model takes up more than the limit of " +
                                                       std::to_string(budget.whole()) + " bytes");
            return;
        }
        structure.storedFiles.emplace_back(picture.begin(), picture.end());
    }
    section.storedBytes = bytes.position() - section.offset;
    section.unpackedBytes = section.storedBytes;
    if (!bytes.ok()) {
        findings.errorAtByte(bytes.position(), "the file ends inside the stored pictures of a file structure: " +
                                                   std::to_string(count) + " are announced");
        return;
    }
    section.state = Model::SectionState::Read;
}

} // namespace prc
