#pragma once

#include "platform/prcfile/PRCScene.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace prc::Model
{

/// The styles that the entity references of occurrences give to things below them, during a walk of the tree.
///
/// Where several occurrences above a thing refer to it, the outermost wins: an assembly decides over its parts.
class StyleOverrides
{
public:
    /// @param limit references that may be in force, counted anew for each placing of their occurrence, and faces that
    ///              they may colour: a small file that shares occurrences many times over would take very long.
    explicit StyleOverrides(std::uint32_t limit)
        : left(limit)
    {}

    /// Begins a level of the tree: what is added is in force until the level ends.
    void beginLevel() { levels.push_back(opened.size()); }
    void endLevel();

    /// Adds the references of an occurrence to the innermost level.
    void add(const ProductOccurrence& occurrence, std::uint32_t structure);

    /// @return the style that an entity is given, if any.
    [[nodiscard]] std::optional<StyleReference> styleOf(std::uint32_t structure, std::uint32_t identifier) const;

    /// Appends the styles that faces of an item are given, in ascending order of the faces.
    void appendFaceStyles(std::uint32_t structure, const RepresentationItem& item, std::vector<FaceStyle>& styles);

    /// Whether references were left out because of the limit.
    [[nodiscard]] bool limitReached() const { return reached; }

    /// Whether a reference gives a style to an entity or to a face; everything else is not applied.
    [[nodiscard]] static bool isApplied(const EntityReference& reference);

private:
    /// Kind of reference, file structure, then the identifier of an entity or context and body of an item.
    using Target = std::array<std::uint32_t, 4>;

    bool take(std::size_t count);

    std::map<Target, std::vector<FaceStyle>> active; ///< those of outer occurrences first.
    std::vector<std::vector<FaceStyle>*> opened;     ///< each gets its last entry taken away when its level ends.
    std::vector<std::size_t> levels;                 ///< length of `opened` at the beginning of each level.
    std::size_t left;
    bool reached = false;
};

} // namespace prc::Model
