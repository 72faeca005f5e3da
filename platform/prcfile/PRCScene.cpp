#include "platform/prcfile/PRCScene.h"

#include "platform/prcfile/StyleOverrides.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

namespace prc::Model
{

namespace
{

constexpr unsigned longestPrototypeChain = 64;

/// What is handed down the tree.
struct State
{
    StyleReference style;
    bool isShown = true;
    bool handsDownShow = false;
    bool handsDownColour = false;
};

State stateBelow(const State& parent, const Graphics& graphics, std::uint32_t structure)
{
    const unsigned behaviour = graphics.behaviour;
    const bool takesShow = parent.handsDownShow || (behaviour & Behaviour::takesShowOfParent) != 0;
    const bool takesColour = parent.handsDownColour || (behaviour & Behaviour::takesColourOfParent) != 0;
    State state;
    state.isShown = takesShow ? parent.isShown : graphics.isShown();
    const bool keepsParentStyle = graphics.style == nullIndex || (takesColour && parent.style.style != nullIndex);
    state.style = keepsParentStyle ? parent.style : StyleReference{structure, graphics.style};
    state.handsDownShow = (behaviour & Behaviour::childrenInheritShow) != 0;
    state.handsDownColour = (behaviour & Behaviour::childrenInheritColour) != 0;
    return state;
}

class Placement
{
public:
    Placement(const PRCModel& placed, const SceneLimits& sceneLimits)
        : model(placed)
        , limits(sceneLimits)
        , overrides(sceneLimits.items)
    {
        for (const FileStructure& structure : model.structures)
            isOnPath.emplace_back(structure.occurrences.size());
    }

    PlacedScene run()
    {
        for (const OccurrenceReference& root : model.roots) {
            enter(root, nullIndex, {});
            while (!path.empty())
                advance();
        }
        noteLeftOut(cycles, "occurrences inside themselves");
        noteLeftOut(tooDeep, "occurrences below the deepest level of the tree");
        noteLeftOut(tooMany, "occurrences or parts, or more, beyond the limit for a scene");
        noteReferences();
        return std::move(scene);
    }

private:
    /// An occurrence whose children are being placed.
    struct Frame
    {
        std::uint32_t placed;
        State state;
        std::size_t nextChild = 0;
    };

    [[nodiscard]] const ProductOccurrence& at(const OccurrenceReference& reference) const
    {
        return model.structures[reference.structure].occurrences[reference.occurrence];
    }

    void noteLeftOut(std::uint64_t count, const char* what)
    {
        if (count > 0)
            scene.notes.push_back(std::to_string(count) + " " + what + " are left out");
    }

    void noteReferences()
    {
        std::size_t unapplied = 0;
        for (const FileStructure& structure : model.structures) {
            for (const ProductOccurrence& occurrence : structure.occurrences)
                unapplied += static_cast<std::size_t>(
                    std::ranges::count_if(occurrence.entityReferences, std::not_fn(StyleOverrides::isApplied)));
        }
        if (unapplied > 0)
            scene.notes.push_back(std::to_string(unapplied) +
                                  " entity references are not applied: they give no style to an entity or face");
        if (overrides.limitReached())
            scene.notes.emplace_back("entity references beyond the limit for a scene are not applied");
    }

    /// The state of an entity, with the style that an occurrence above may give it.
    [[nodiscard]] State stateOf(const State& parent, const Graphics& graphics, std::uint32_t structure,
                                std::uint32_t identifier) const
    {
        State state = stateBelow(parent, graphics, structure);
        if (const std::optional<StyleReference> given = overrides.styleOf(structure, identifier))
            state.style = *given;
        return state;
    }

    /// Follows prototypes to the first occurrence that holds anything.
    [[nodiscard]] OccurrenceReference contentOf(OccurrenceReference reference) const
    {
        for (unsigned step = 0; step < longestPrototypeChain; ++step) {
            const ProductOccurrence& occurrence = at(reference);
            const bool isEmpty = occurrence.part == nullIndex && occurrence.children.empty() &&
                                 occurrence.externalData.occurrence == nullIndex;
            if (!isEmpty || occurrence.prototype.occurrence == nullIndex)
                break;
            reference = occurrence.prototype;
        }
        return reference;
    }

    void enter(const OccurrenceReference& reference, std::uint32_t parent, const State& parentState)
    {
        if (isOnPath[reference.structure][reference.occurrence]) {
            ++cycles;
            return;
        }
        if (path.size() >= limits.depth) {
            ++tooDeep;
            return;
        }
        if (scene.occurrences.size() >= limits.occurrences) {
            ++tooMany;
            return;
        }
        const ProductOccurrence& occurrence = at(reference);
        PlacedOccurrence placed;
        placed.structure = reference.structure;
        placed.occurrence = reference.occurrence;
        placed.parent = parent;
        placed.depth = static_cast<std::uint32_t>(path.size());
        placed.content = contentOf(reference);
        placed.isRemoved = occurrence.isSuppressed || occurrence.graphics.isRemoved();
        if (parent != nullIndex) {
            placed.isRemoved = placed.isRemoved || scene.occurrences[parent].isRemoved;
            placed.world = scene.occurrences[parent].world;
        }
        if (occurrence.location)
            placed.world = multiplied(placed.world, *occurrence.location);
        overrides.beginLevel();
        overrides.add(occurrence, reference.structure);
        if (&at(placed.content) != &occurrence)
            overrides.add(at(placed.content), placed.content.structure);
        const State state = stateOf(parentState, occurrence.graphics, reference.structure, occurrence.identifier);
        placed.style = state.style;
        placed.isShown = state.isShown && !placed.isRemoved;
        const auto number = static_cast<std::uint32_t>(scene.occurrences.size());
        scene.occurrences.push_back(placed);
        isOnPath[reference.structure][reference.occurrence] = true;
        path.push_back({number, state});
        placePart(number, state);
    }

    /// Places the next child of the innermost open occurrence, or closes it.
    void advance()
    {
        Frame& frame = path.back();
        const PlacedOccurrence& placed = scene.occurrences[frame.placed];
        const OccurrenceReference contentReference = placed.content; // the list moves when it grows
        const ProductOccurrence& content = at(contentReference);
        const std::size_t child = frame.nextChild++;
        const State state = frame.state; // the frame moves when the path grows
        if (child < content.children.size()) {
            enter({contentReference.structure, content.children[child]}, frame.placed, state);
        } else if (child == content.children.size() && content.externalData.occurrence != nullIndex) {
            enter(content.externalData, frame.placed, state);
        } else {
            isOnPath[placed.structure][placed.occurrence] = false;
            overrides.endLevel();
            path.pop_back();
        }
    }

    void placePart(std::uint32_t number, const State& occurrenceState)
    {
        const OccurrenceReference content = scene.occurrences[number].content;
        const std::uint32_t partNumber = at(content).part;
        if (partNumber == nullIndex)
            return;
        const Part& part = model.structures[content.structure].parts[partNumber];
        if (part.items.size() > limits.items - visitedItems) {
            ++tooMany;
            return;
        }
        visitedItems += static_cast<std::uint32_t>(part.items.size());
        const State partState = stateOf(occurrenceState, part.graphics, content.structure, part.identifier);
        states.clear();
        worlds.clear();
        for (std::uint32_t item = 0; item < part.items.size(); ++item)
            placeItem(number, partNumber, item, partState);
    }

    /// Items of a part are placed in their order: `states` and `worlds` hold those of the sets around an item.
    void placeItem(std::uint32_t number, std::uint32_t partNumber, std::uint32_t itemNumber, const State& partState)
    {
        const PlacedOccurrence& placed = scene.occurrences[number];
        const std::uint32_t structureNumber = placed.content.structure;
        const FileStructure& structure = model.structures[structureNumber];
        const Part& part = structure.parts[partNumber];
        const RepresentationItem& stored = part.items[itemNumber];
        const bool isInSet = stored.set != nullIndex;
        const State state =
            stateOf(isInSet ? states[stored.set] : partState, stored.graphics, structureNumber, stored.identifier);
        Matrix world = isInSet ? worlds[stored.set] : placed.world;
        if (stored.coordinateSystem != nullIndex)
            world = multiplied(world, structure.globals.coordinateSystems[stored.coordinateSystem].transformation);
        states.push_back(state);
        worlds.push_back(world);
        if (stored.type == EntityType::Set)
            return;
        PlacedItem item{number, structureNumber, partNumber, itemNumber, world, state.style};
        item.isShown = state.isShown && !placed.isRemoved && !part.graphics.isRemoved() && !stored.graphics.isRemoved();
        item.firstFaceStyle = static_cast<std::uint32_t>(scene.faceStyles.size());
        overrides.appendFaceStyles(structureNumber, stored, scene.faceStyles);
        item.faceStyleCount = static_cast<std::uint32_t>(scene.faceStyles.size()) - item.firstFaceStyle;
        scene.items.push_back(item);
    }

    const PRCModel& model;
    const SceneLimits& limits;
    PlacedScene scene;
    std::vector<Frame> path;
    std::vector<std::vector<bool>> isOnPath; ///< by structure and occurrence.
    StyleOverrides overrides;
    std::vector<State> states; ///< of the items of the part that is being placed.
    std::vector<Matrix> worlds;
    std::uint32_t visitedItems = 0;
    std::uint64_t cycles = 0;
    std::uint64_t tooDeep = 0;
    std::uint64_t tooMany = 0;
};

} // namespace

PlacedScene placeScene(const PRCModel& model, const SceneLimits& limits)
{
    return Placement(model, limits).run();
}

StyleReference styleOfFace(const PRCModel& model, const PlacedScene& scene, const PlacedItem& item, std::uint32_t face)
{
    const auto begin = scene.faceStyles.begin() + item.firstFaceStyle;
    const auto end = begin + item.faceStyleCount;
    const auto given = std::lower_bound(
        begin, end, face, [](const FaceStyle& style, std::uint32_t wanted) { return style.face < wanted; });
    if (given != end && given->face == face)
        return given->style;
    const FileStructure& structure = model.structures[item.structure];
    const std::uint32_t mesh = structure.parts[item.part].items[item.item].tessellation;
    if (mesh < structure.tessellations.size() && face < structure.tessellations[mesh].faces.size()) {
        const std::vector<std::uint32_t>& own = structure.tessellations[mesh].faces[face].styles;
        if (!own.empty() && own.front() != nullIndex)
            return {item.structure, own.front()};
    }
    return item.style;
}

Matrix multiplied(const Matrix& outer, const Matrix& inner)
{
    Matrix product{};
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t column = 0; column < 4; ++column) {
            double sum = 0.0;
            for (std::size_t k = 0; k < 4; ++k)
                sum += outer[4 * row + k] * inner[4 * k + column];
            product[4 * row + column] = sum;
        }
    }
    return product;
}

} // namespace prc::Model
