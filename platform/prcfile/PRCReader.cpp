#include "platform/prcfile/PRCReader.h"

#include "platform/prcfile/Decompression.h"
#include "platform/prcfile/Findings.h"
#include "platform/prcfile/GlobalsReader.h"
#include "platform/prcfile/HeaderReader.h"
#include "platform/prcfile/ReferenceChecks.h"
#include "platform/prcfile/SectionReader.h"
#include "platform/prcfile/StructureIds.h"
#include "platform/prcfile/TessellationReader.h"
#include "platform/prcfile/TreeReader.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace prc
{

namespace
{

using namespace Model;

constexpr std::array<const char*, sectionCount> sectionNames = {"header",       "globals",  "tree",
                                                                "tessellation", "geometry", "extra geometry"};

/// Reads one file. What all sections share: the bytes, the limits, the model.
class FileReader
{
public:
    FileReader(std::span<const std::uint8_t> fileBytes, const ReadLimits& readLimits, PRCModel& target)
        : file(fileBytes)
        , limits(readLimits)
        , model(target)
        , unpackBudget(unpackLimit(fileBytes.size(), readLimits))
        , decodedBudget(std::min(readLimits.decodedBytes, product(unpackBudget.whole(), decodedPerUnpacked)))
    {}

    /// The main header, and from it what all sections need. Called first.
    ///
    /// @return false when nothing more can be read from the file.
    [[nodiscard]] bool readHeader();
    void readStructure(std::size_t number);
    void readModelFile();

private:
    template <typename Read>
    void readSection(SectionSummary& summary, Findings& findings, const Schemas& schemas, Read read);

    static constexpr std::uint64_t decodedPerUnpacked = 16;

    /// The largest number where the product is larger: limits may be anything.
    static std::uint64_t product(std::uint64_t a, std::uint64_t b)
    {
        return b != 0 && a > UINT64_MAX / b ? UINT64_MAX : a * b;
    }

    static std::uint64_t unpackLimit(std::size_t fileSize, const ReadLimits& limits)
    {
        constexpr std::uint64_t always = std::uint64_t{1} << 24;
        const std::uint64_t inProportion = product(limits.expansion, fileSize);
        return std::min(limits.unpackedBytes, inProportion > UINT64_MAX - always ? UINT64_MAX : inProportion + always);
    }

    [[nodiscard]] std::uint64_t likelySize(std::uint64_t offset) const;
    [[nodiscard]] UnpackedStream unpack(SectionSummary& summary, Findings& findings);
    [[nodiscard]] Findings findingsFor(Section section, std::size_t structure);
    void measureSection(FileStructure& structure, std::size_t number, Section section);
    void readRoots(SectionReader& section, Findings& findings);

    std::span<const std::uint8_t> file;
    const ReadLimits& limits;
    PRCModel& model;
    ReadBudget unpackBudget;
    ReadBudget decodedBudget;
    StructureIds structureIds{{}};
    std::vector<std::uint64_t> offsets; ///< of all sections, ascending, and the end of the file.
};

bool FileReader::readHeader()
{
    if (!readMainHeader(file, limits, model))
        return false;
    structureIds = StructureIds(model.structures);
    for (const FileStructure& structure : model.structures) {
        for (const SectionSummary& section : structure.sections)
            offsets.push_back(section.offset);
    }
    offsets.push_back(model.modelFile.offset);
    offsets.push_back(file.size());
    std::ranges::sort(offsets);
    return true;
}

Findings FileReader::findingsFor(Section section, std::size_t structure)
{
    return {model, std::string(sectionNames[static_cast<std::size_t>(section)]) + " of file structure " +
                       std::to_string(structure)};
}

/// Sections are not said to be of any size; as a rule each ends where the next one begins.
std::uint64_t FileReader::likelySize(std::uint64_t offset) const
{
    const auto next = std::ranges::upper_bound(offsets, offset);
    return next != offsets.end() ? *next - offset : 0;
}

UnpackedStream FileReader::unpack(SectionSummary& summary, Findings& findings)
{
    summary.state = SectionState::Damaged;
    UnpackedStream stream;
    if (summary.offset == 0) {
        summary.state = SectionState::Absent;
        findings.error("expected a section: the main header states none");
        return stream;
    }
    if (summary.offset < model.headerBytes || summary.offset >= file.size()) {
        findings.errorAtByte(summary.offset,
                             "expected a section behind the main header and inside the file, which end at " +
                                 std::to_string(model.headerBytes) + " and " + std::to_string(file.size()));
        return stream;
    }
    stream = unpackStream(file.subspan(static_cast<std::size_t>(summary.offset)), likelySize(summary.offset),
                          unpackBudget.rest());
    summary.storedBytes = stream.storedBytes;
    summary.unpackedBytes = stream.unpackedBytes;
    // What fails costs time too, and a file may have thousands of sections. Half of the rest stays for those behind.
    std::uint64_t cost = stream.unpackedBytes;
    if (stream.result == UnpackingResult::Damaged) {
        cost = std::min(stream.room, unpackBudget.rest() / 2);
        findings.errorAtByte(summary.offset, "expected a complete zlib stream: the section is damaged or cut off");
    } else if (stream.result == UnpackingResult::OverTheLimit) {
        cost = unpackBudget.rest() / 2;
        findings.errorAtByte(summary.offset, "the sections unpack to more than the limit of " +
                                                 std::to_string(unpackBudget.whole()) + " bytes");
    }
    if (!unpackBudget.take(cost))
        stream.result = UnpackingResult::OverTheLimit;
    return stream;
}

template <typename Read>
void FileReader::readSection(SectionSummary& summary, Findings& findings, const Schemas& schemas, Read read)
{
    const UnpackedStream stream = unpack(summary, findings);
    if (stream.result != UnpackingResult::Done)
        return;
    SectionReader section(stream.view(), decodedBudget, schemas);
    read(section);
    summary.state = section.ok() ? SectionState::Read : SectionState::Partial;
    if (!section.ok())
        findings.errorAtBit(section.failurePosition(), section.failureReason());
    else if (section.bitsLeft() >= 8)
        findings.note(std::to_string(section.bitsLeft()) + " bits are left over behind all that is known");
}

/// Exact geometry is not read; what it takes up is of interest all the same.
void FileReader::measureSection(FileStructure& structure, std::size_t number, Section section)
{
    SectionSummary& summary = structure.sections[static_cast<std::size_t>(section)];
    if (summary.offset == 0)
        return; // an old file may do without
    Findings findings = findingsFor(section, number);
    if (unpack(summary, findings).result == UnpackingResult::Done)
        summary.state = SectionState::Skipped;
}

void FileReader::readStructure(std::size_t number)
{
    FileStructure& structure = model.structures[number];
    const auto summary = [&structure](Section section) -> SectionSummary& {
        return structure.sections[static_cast<std::size_t>(section)];
    };
    Findings headerFindings = findingsFor(Section::Header, number);
    readStructureHeader(file, structure, decodedBudget, headerFindings);

    Schemas schemas;
    Findings globalsFindings = findingsFor(Section::Globals, number);
    readSection(summary(Section::Globals), globalsFindings, schemas, [&](SectionReader& section) {
        readSchemas(section, schemas);
        for (const auto& [type, tokens] : schemas)
            structure.schemas.push_back({type, static_cast<std::uint32_t>(tokens.size())});
        readGlobals(section, structure.globals);
    });
    Findings treeFindings = findingsFor(Section::Tree, number);
    readSection(summary(Section::Tree), treeFindings, schemas,
                [&](SectionReader& section) { readTree(section, structureIds, structure, number); });
    Findings meshFindings = findingsFor(Section::Tessellation, number);
    readSection(summary(Section::Tessellation), meshFindings, schemas,
                [&](SectionReader& section) { readTessellations(section, structure, meshFindings); });
    measureSection(structure, number, Section::Geometry);
    measureSection(structure, number, Section::ExtraGeometry);
    Findings referenceFindings(model, "file structure " + std::to_string(number));
    resolveReferences(structure, referenceFindings);
}

void FileReader::readRoots(SectionReader& section, Findings& findings)
{
    constexpr unsigned rootBits = 6;
    const std::uint32_t count = section.readCount(rootBits, sizeof(OccurrenceReference), "roots");
    for (std::uint32_t number = 0; number < count && section.ok(); ++number) {
        OccurrenceReference root;
        root.structure = structureIds.find(section.readUniqueId());
        root.occurrence = section.readIndexPlusOne();
        section.readBoolean(); // active
        if (!section.ok())
            return;
        if (root.structure == nullIndex || root.occurrence >= model.structures[root.structure].occurrences.size())
            findings.note("root " + std::to_string(number) + " leads nowhere");
        else
            model.roots.push_back(root);
    }
}

void FileReader::readModelFile()
{
    Findings findings(model, "model file");
    Schemas schemas;
    readSection(model.modelFile, findings, schemas, [&](SectionReader& section) {
        readSchemas(section, schemas);
        if (!section.expectEntity(EntityType::ModelFile, "the model file"))
            return;
        model.name = section.readContentBase();
        model.unitFromAuthoringSystem = section.readBoolean();
        const double unit = section.readDouble();
        if (!section.ok())
            return;
        if (unit > 0.0)
            model.unitInMillimetres = unit;
        else
            findings.note("expected a unit of more than 0 mm, found " + std::to_string(unit) + ": it counts as 1");
        readRoots(section, findings);
        for (std::size_t number = 0; number < model.structures.size(); ++number)
            section.readUnsignedInteger();
        // User data come last, and one producer's do not fit the section: nothing would be gained by reading them.
        section.skip(section.bitsLeft());
    });
}

/// Gives a model whose root is not named, or wrong, the occurrence that a structure names as its root, else the last
/// one that is nobody's child.
void findMissingRoot(PRCModel& model)
{
    if (!model.roots.empty())
        return;
    Findings findings(model, "file");
    for (std::uint32_t number = 0; number < model.structures.size(); ++number) {
        const FileStructure& structure = model.structures[number];
        if (structure.occurrences.empty())
            continue;
        std::uint32_t root = structure.root;
        if (root == nullIndex) {
            std::vector<bool> isChild(structure.occurrences.size());
            for (const ProductOccurrence& occurrence : structure.occurrences) {
                for (const std::uint32_t child : occurrence.children)
                    isChild[child] = true;
            }
            root = static_cast<std::uint32_t>(isChild.size() - 1);
            while (root > 0 && isChild[root])
                --root;
        }
        model.roots.push_back({number, root});
        findings.note("no usable root is named: occurrence " + std::to_string(root) + " of file structure " +
                      std::to_string(number) + " is taken for it");
        return;
    }
}

struct CloseFile
{
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};

} // namespace

PRCModel readPRC(std::span<const std::uint8_t> file, const ReadLimits& limits)
{
    PRCModel model;
    FileReader reader(file, limits, model);
    if (!reader.readHeader())
        return model;
    for (std::size_t number = 0; number < model.structures.size(); ++number)
        reader.readStructure(number);
    Findings findings(model, "file");
    resolveOccurrenceReferences(model.structures, findings);
    reader.readModelFile();
    findMissingRoot(model);
    return model;
}

PRCModel readPRCFile(const std::filesystem::path& path, const ReadLimits& limits)
{
    const auto fail = [&path]() -> std::system_error { return {errno, std::generic_category(), path.string()}; };
    const std::unique_ptr<std::FILE, CloseFile> stream(std::fopen(path.c_str(), "rb"));
    if (!stream)
        throw fail();
    // Read in growing pieces: a pipe has no size.
    ByteBuffer bytes;
    std::size_t size = 0;
    constexpr std::size_t firstPiece = std::size_t{1} << 16;
    while (true) {
        bytes.resize(size == 0 ? firstPiece : size * 2);
        size += std::fread(bytes.data() + size, 1, bytes.size() - size, stream.get());
        if (size < bytes.size())
            break;
    }
    if (std::ferror(stream.get()) != 0)
        throw fail();
    return readPRC(bytes.view().first(size), limits);
}

} // namespace prc
