#include "platform/prcfile/StyleOverrides.h"

#include <algorithm>

namespace prc::Model
{

namespace
{

constexpr std::uint32_t onEntity = static_cast<std::uint32_t>(EntityType::ReferenceOnBase);
constexpr std::uint32_t onTopology = static_cast<std::uint32_t>(EntityType::ReferenceOnTopology);
constexpr std::uint32_t topologyFace = 149;

} // namespace

bool StyleOverrides::isApplied(const EntityReference& reference)
{
    if (reference.graphics.style == nullIndex || reference.structure == nullIndex)
        return false;
    if (reference.kind == EntityType::ReferenceOnBase)
        return reference.identifier != 0; // the identifier of nothing
    return reference.kind == EntityType::ReferenceOnTopology && reference.entityType == topologyFace &&
           reference.topologyIndices.size() == 1;
}

bool StyleOverrides::take(std::size_t count)
{
    if (count > left) {
        reached = true;
        return false;
    }
    left -= count;
    return true;
}

void StyleOverrides::add(const ProductOccurrence& occurrence, std::uint32_t structure)
{
    if (!take(occurrence.entityReferences.size()))
        return;
    for (const EntityReference& reference : occurrence.entityReferences) {
        if (!isApplied(reference))
            continue;
        const bool isFace = reference.kind == EntityType::ReferenceOnTopology;
        const Target target = isFace ? Target{onTopology, reference.structure, reference.body[0], reference.body[1]}
                                     : Target{onEntity, reference.structure, reference.identifier, 0};
        std::vector<FaceStyle>& styles = active[target];
        styles.push_back({isFace ? reference.topologyIndices[0] : 0, {structure, reference.graphics.style}});
        opened.push_back(&styles);
    }
}

void StyleOverrides::endLevel()
{
    for (; opened.size() > levels.back(); opened.pop_back())
        opened.back()->pop_back();
    levels.pop_back();
}

std::optional<StyleReference> StyleOverrides::styleOf(std::uint32_t structure, std::uint32_t identifier) const
{
    if (opened.empty())
        return std::nullopt;
    const auto found = active.find({onEntity, structure, identifier, 0});
    if (found == active.end() || found->second.empty())
        return std::nullopt;
    return found->second.front().style;
}

void StyleOverrides::appendFaceStyles(std::uint32_t structure, const RepresentationItem& item,
                                      std::vector<FaceStyle>& styles)
{
    if (opened.empty() || item.body[0] == nullIndex)
        return;
    const auto found = active.find({onTopology, structure, item.body[0], item.body[1]});
    if (found == active.end() || !take(found->second.size()))
        return;
    const auto begin = static_cast<std::ptrdiff_t>(styles.size());
    styles.insert(styles.end(), found->second.begin(), found->second.end());
    std::stable_sort(styles.begin() + begin, styles.end(),
                     [](const FaceStyle& a, const FaceStyle& b) { return a.face < b.face; });
    styles.erase(std::unique(styles.begin() + begin, styles.end(),
                             [](const FaceStyle& a, const FaceStyle& b) { return a.face == b.face; }),
                 styles.end());
}

} // namespace prc::Model
