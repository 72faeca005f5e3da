#pragma once

#include "platform/prcfile/NullIndex.h"
#include "platform/prcfile/SectionWriter.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

namespace prc::Test
{

using Fill = std::function<void(SectionWriter&)>; ///< null: nothing, or the field that says "none".
using Byte = std::uint8_t;

/// Writes fields as their types ask: numbers of any integral type as unsigned integers, Bytes as characters.
template <typename... Fields>
void Put(SectionWriter& section, const Fields&... fields)
{
    [[maybe_unused]] const auto put = [&section](const auto& field) {
        using Field = std::remove_cvref_t<decltype(field)>;
        if constexpr (std::is_same_v<Field, bool>)
            section.writeBoolean(field);
        else if constexpr (std::is_same_v<Field, Byte>)
            section.writeCharacter(field);
        else if constexpr (std::is_same_v<Field, EntityType>)
            section.writeEntityType(field);
        else if constexpr (std::is_floating_point_v<Field>)
            section.writeDouble(field);
        else if constexpr (std::is_integral_v<Field>)
            section.writeUnsignedInteger(static_cast<std::uint32_t>(field));
        else if constexpr (std::is_same_v<Field, UniqueId>)
            section.writeUniqueId(field);
        else if constexpr (std::is_same_v<Field, std::vector<double>>)
            section.writeDoubles(field);
        else if constexpr (std::is_same_v<Field, std::vector<std::uint32_t>>)
            section.writeUnsignedIntegers(field);
        else
            section.writeString(field);
    };
    (put(fields), ...);
}

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

/// What an occurrence has beyond nothing.
struct OccurrenceFields
{
    std::string name = "node";
    std::uint32_t part = nullIndex;
    std::vector<std::uint32_t> children{};
    Fill writeGraphics{};   ///< null: shown, no style.
    Fill writeReferences{}; ///< prototype and external data.
    Fill writeLocation{};
    Fill writeEntityReferences{}; ///< with their number.
    Fill writeAdded{};            ///< in front of the user data.
};

/// A file with these styles and occurrences, the last one the root; without parts and meshes.
[[nodiscard]] HandMadeFile FileOf(const std::vector<OccurrenceFields>& occurrences, std::uint32_t styles = 0,
                                  const std::vector<Matrix>& coordinateSystems = {});

/// The same with a single occurrence named "root".
[[nodiscard]] HandMadeFile PlainFile();

/// The globals behind the schemas: so many plain styles, one colour and one material, and these reference frames.
void WriteGlobals(SectionWriter& section, std::uint32_t styles, const std::vector<Matrix>& coordinateSystems = {});

/// A tree with a part whose items, their number first, the caller writes; or without one. The root is the last
/// occurrence.
[[nodiscard]] SectionWriter TreeOf(const std::vector<OccurrenceFields>& occurrences, const Fill& writeItems = {});

/// The identifier that was written last, in any file.
[[nodiscard]] std::uint32_t LastIdentifier();

/// The head that all items share.
void WriteItemHead(SectionWriter& section, EntityType type, std::uint32_t style, std::uint32_t coordinateSystem,
                   std::uint32_t tessellation);

void WriteExplicitGraphics(SectionWriter& section, std::uint32_t style, std::uint16_t behaviour);

/// An entity reference up to the kind of its target.
void WriteReferenceHead(SectionWriter& section, std::uint32_t style, EntityType kind);

struct FaceFields
{
    std::uint32_t usedEntities = 2;
    std::uint32_t start = 0;
    std::vector<std::uint32_t> sizes{};
    std::uint32_t textureIndices = 0;
    Fill writeColours{};
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

/// A section that announces so many tessellations and holds this mesh and what else the caller writes.
[[nodiscard]] SectionWriter TessellationsOf(std::uint32_t count, const MeshFields& mesh, const Fill& writeMore = {});

} // namespace prc::Test
