#pragma once

#include "platform/prcfile/NullIndex.h"
#include "platform/prcfile/SectionWriter.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace prc::Test
{

/// A file put together section by section, for what the writer of the library never writes.
struct HandMadeFile
{
    SectionWriter globals;
    SectionWriter tree;
    SectionWriter tessellation;
    SectionWriter model;
    std::vector<std::vector<std::uint8_t>> pictures;

    [[nodiscard]] std::vector<std::uint8_t> Bytes() const;

    static constexpr UniqueId structureId = {11, 12, 13, 14};
    UniqueId id = structureId; ///< of the file structure.
};

/// A file with several file structures; the model file is that of the last.
[[nodiscard]] std::vector<std::uint8_t> FileOfStructures(std::span<const HandMadeFile> structures);

/// A file with one occurrence named "root", without styles, parts and meshes.
[[nodiscard]] HandMadeFile PlainFile();

/// The globals behind the schemas: so many plain styles, one colour and one material, and these reference frames.
void WriteGlobals(SectionWriter& section, std::uint32_t styles, const std::vector<Matrix>& coordinateSystems = {});

/// A tree of which parts and occurrences are written by the caller, each with its number in front of it.
///
/// @param root position of the root occurrence.
[[nodiscard]] SectionWriter TreeOf(const std::function<void(SectionWriter&)>& writeParts,
                                   const std::function<void(SectionWriter&)>& writeOccurrences, std::uint32_t root);

/// What an occurrence has beyond nothing.
struct OccurrenceFields
{
    std::string name = "node";
    std::uint32_t part = nullIndex;
    std::vector<std::uint32_t> children{};
    std::function<void(SectionWriter&)> writeGraphics{};         ///< null: shown, no style.
    std::function<void(SectionWriter&)> writeReferences{};       ///< prototype and external data; null: none.
    std::function<void(SectionWriter&)> writeLocation{};         ///< null: none.
    std::function<void(SectionWriter&)> writeEntityReferences{}; ///< with their number; null: none.
};

void WriteOccurrence(SectionWriter& section, const OccurrenceFields& fields);

/// A part with items that the caller writes, their number first.
void WritePart(SectionWriter& section, const std::function<void(SectionWriter&)>& writeItems);

/// The identifier that was written last, in any file.
[[nodiscard]] std::uint32_t LastIdentifier();

/// The head that all items share.
void WriteItemHead(SectionWriter& section, EntityType type, std::uint32_t style, std::uint32_t coordinateSystem,
                   std::uint32_t tessellation);

void WriteExplicitGraphics(SectionWriter& section, std::uint32_t style, std::uint16_t behaviour);

struct FaceFields
{
    std::uint32_t usedEntities = 2;
    std::uint32_t start = 0;
    std::vector<std::uint32_t> sizes{};
    std::uint32_t textureIndices = 0;
    std::function<void(SectionWriter&)> writeColours{}; ///< null: none.
};

struct MeshFields
{
    std::vector<double> coordinates{};
    std::vector<double> normals{};
    std::vector<double> textures{};
    std::vector<std::uint32_t> indices{};
    std::vector<FaceFields> faces{};
    bool recalculateNormals = false;
};

void WriteMesh(SectionWriter& section, const MeshFields& mesh);

/// A section with so many tessellations, which the caller writes.
[[nodiscard]] SectionWriter TessellationsOf(std::uint32_t count, const std::function<void(SectionWriter&)>& write);

} // namespace prc::Test
