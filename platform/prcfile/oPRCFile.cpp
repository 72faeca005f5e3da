#include "platform/prcfile/oPRCFile.h"

#include "platform/prcfile/Compression.h"
#include "platform/prcfile/ContentDigest.h"
#include "platform/prcfile/FileLayout.h"
#include "platform/prcfile/GroupTree.h"
#include "platform/prcfile/MaterialTable.h"
#include "platform/prcfile/Output.h"
#include "platform/prcfile/SectionWriter.h"
#include "platform/prcfile/TessellationChecks.h"
#include "platform/prcfile/TessellationSection.h"
#include "platform/prcfile/WriteTimer.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <optional>
#include <span>
#include <stdexcept>
#include <utility>

namespace prc
{

namespace
{

/// @param matrix 16 doubles, or null for the identity.
Matrix checkedMatrix(const double* matrix)
{
    if (matrix == nullptr)
        return identityMatrix;
    Matrix copy;
    std::copy_n(matrix, copy.size(), copy.begin());
    if (!allFinite(copy))
        throw std::invalid_argument("a matrix is not finite");
    return copy;
}

/// The sections that would hold exact geometry: always present, always empty.
SectionWriter emptySection(EntityType type)
{
    SectionWriter section;
    section.writeEntityType(type);
    section.writeContentBase(std::nullopt);
    section.writeUnsignedInteger(0); // entities
    section.writeNoUserData();
    return section;
}

struct FileIds
{
    UniqueId file;
    UniqueId fileStructure;
};

SectionWriter modelFile(const GroupTree& tree, double unit, const UniqueId& fileStructure)
{
    SectionWriter section;
    section.writeEmptySchema();
    section.writeEntityType(EntityType::ModelFile);
    section.writeContentBase(tree.rootName());
    section.writeBoolean(true); // the unit comes from the authoring system
    section.writeDouble(unit);
    section.writeUnsignedInteger(1); // roots
    section.writeUniqueId(fileStructure);
    section.writeIndexPlusOne(tree.rootOccurrence());
    section.writeBoolean(true);      // active
    section.writeUnsignedInteger(0); // index of the only file structure
    section.writeNoUserData();
    return section;
}

using PngFiles = std::vector<std::vector<std::uint8_t>>;
using CompressedSections = std::array<ByteBuffer, sectionCount - 1>;

FileLayout layOut(const PngFiles& pictures, const CompressedSections& sections, const ByteBuffer& model)
{
    FileParts parts;
    for (const std::vector<std::uint8_t>& picture : pictures)
        parts.pictures.push_back(picture.size());
    for (std::size_t section = 0; section < sections.size(); ++section)
        parts.compressedSections[section] = sections[section].size();
    parts.modelFile = model.size();
    return layOutFile(parts);
}

void writeFile(Output& output, const FileIds& ids, const PngFiles& pictures, const CompressedSections& sections,
               const ByteBuffer& model)
{
    const std::vector<std::uint8_t> fileHeader =
        mainHeader(layOut(pictures, sections, model), ids.file, ids.fileStructure);
    const std::vector<std::uint8_t> structureHeader =
        fileStructureHeader(ids.fileStructure, static_cast<std::uint32_t>(pictures.size()));
    std::vector<std::array<std::uint8_t, 4>> pictureSizes;
    pictureSizes.reserve(pictures.size()); // the pieces point into it

    std::vector<std::span<const std::uint8_t>> pieces = {fileHeader, structureHeader};
    for (const std::vector<std::uint8_t>& picture : pictures) {
        pieces.emplace_back(pictureSizes.emplace_back(pictureSizeField(static_cast<std::uint32_t>(picture.size()))));
        pieces.emplace_back(picture);
    }
    for (const ByteBuffer& section : sections)
        pieces.push_back(section.view());
    pieces.push_back(model.view());
    output.write(pieces);
}

} // namespace

/// What was gathered so far.
class oPRCFile::Content
{
public:
    explicit Content(double fileUnit)
        : unit(fileUnit)
    {}

    /// Encodes the rest, in the order of the file, and writes everything. Called once.
    void write(Output& output);

    MaterialTable materials;
    TessellationSection tessellations;
    GroupTree tree;

private:
    using Bytes = std::span<const std::uint8_t>;

    [[nodiscard]] FileIds deriveIds(Bytes globals, Bytes treeBytes, Bytes tessellationBytes) const;

    double unit;
};

FileIds oPRCFile::Content::deriveIds(Bytes globals, Bytes treeBytes, Bytes tessellationBytes) const
{
    ContentDigest digest;
    digest.add(std::bit_cast<std::uint64_t>(unit));
    digest.add(globals);
    digest.add(treeBytes);
    digest.add(tessellationBytes);
    for (const Picture& picture : materials.pictures().pictures())
        digest.add(picture.pixels);
    return {digest.id(1), digest.id(2)};
}

void oPRCFile::Content::write(Output& output)
{
    std::optional<WriteTimer> timer(&WriteTimes::encoding);
    tree.close();
    IdentifierCounter identifiers;
    SectionWriter globals;
    materials.write(globals, identifiers);
    SectionWriter treeSection;
    tree.write(treeSection, identifiers);
    const Bytes tessellationBytes = tessellations.close();
    const FileIds ids = deriveIds(globals.bytes(), treeSection.bytes(), tessellationBytes);

    timer.emplace(&WriteTimes::compression);
    const CompressedSections sections = {compressSection(globals.bytes()), compressSection(treeSection.bytes()),
                                         compressSection(tessellationBytes),
                                         compressSection(emptySection(EntityType::FileStructureGeometry).bytes()),
                                         compressSection(emptySection(EntityType::FileStructureExtraGeometry).bytes())};
    const ByteBuffer model = compressSection(modelFile(tree, unit, ids.fileStructure).bytes());
    const PngFiles pictures = materials.pictures().encode();

    timer.emplace(&WriteTimes::output);
    writeFile(output, ids, pictures, sections, model);
}

oPRCFile::oPRCFile(const std::string& name, double unit, unsigned fileStructures)
    : oPRCFile(Output::toFile(name), unit, fileStructures)
{}

oPRCFile::oPRCFile(std::vector<std::uint8_t>& bytes, double unit, unsigned fileStructures)
    : oPRCFile(Output::toMemory(bytes), unit, fileStructures)
{}

oPRCFile::oPRCFile(std::ostream& stream, double unit, unsigned fileStructures)
    : oPRCFile(Output::toStream(stream), unit, fileStructures)
{}

oPRCFile::oPRCFile(std::unique_ptr<Output> target, double unit, unsigned fileStructures)
    : output(std::move(target))
    , content(std::make_unique<Content>(unit))
{
    if (!std::isfinite(unit) || unit <= 0.0)
        throw std::invalid_argument("the unit of a PRC file is a positive length");
    if (fileStructures != 1)
        throw std::invalid_argument("a PRC file is written with one file structure");
}

oPRCFile::~oPRCFile() = default;

oPRCFile::Content& oPRCFile::unfinishedContent()
{
    if (!content)
        throw std::logic_error("a PRC file is changed after finish()");
    return *content;
}

void oPRCFile::begingroup(const char* name, const PRCoptions* /*options*/, const double* matrix)
{
    unfinishedContent().tree.beginGroup(name != nullptr ? std::optional<std::string>(name) : std::nullopt,
                                        checkedMatrix(matrix));
}

void oPRCFile::endgroup()
{
    unfinishedContent().tree.endGroup();
}

std::uint32_t oPRCFile::addMaterial(const PRCmaterial& material)
{
    return unfinishedContent().materials.add(material);
}

std::uint32_t oPRCFile::add3DTess(PRC3DTess*& tess, unsigned fileStructure)
{
    const std::unique_ptr<PRC3DTess> owned(std::exchange(tess, nullptr));
    Content& gathered = unfinishedContent();
    if (!owned)
        throw std::invalid_argument("a null tessellation is added");
    if (fileStructure != 0)
        throw std::out_of_range("a tessellation is added to a file structure that does not exist");
    const WriteTimer timer(&WriteTimes::encoding);
    checkTessellation(*owned, gathered.materials.styleCount());
    return gathered.tessellations.add(*owned);
}

void oPRCFile::useMesh(std::uint32_t tess, std::uint32_t style, const double* matrix)
{
    Content& gathered = unfinishedContent();
    if (tess == nullIndex)
        return;
    if (tess >= gathered.tessellations.summaries().size())
        throw std::out_of_range("a tessellation is placed that does not exist");
    if (style != nullIndex && style >= gathered.materials.styleCount())
        throw std::out_of_range("a tessellation is placed in a style that does not exist");

    const TessellationSummary& summary = gathered.tessellations.summaries()[tess];
    // Faces with a style of their own keep it. The item then names it as well, for viewers that look no further.
    const bool facesWin = style != nullIndex && summary.ownStyle != nullIndex;
    const std::uint32_t itemStyle = facesWin ? summary.ownStyle : style;
    if (matrix == nullptr)
        gathered.tree.place(tess, itemStyle, summary);
    else
        gathered.tree.placeAt(checkedMatrix(matrix), tess, itemStyle, summary);
}

bool oPRCFile::finish()
{
    if (!content)
        return false;
    if (content->tree.hasOpenGroups())
        throw std::logic_error("a PRC file is finished inside a group");
    const std::unique_ptr<Content> finished = std::move(content);
    finished->write(*output);
    return true;
}

} // namespace prc
