#include "platform/prcfile/PRCScene.h"

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
        noteLeftOut(tooMany, "occurrences or items, or more, beyond the limit for a scene");
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
        const State state = stateBelow(parentState, occurrence.graphics, reference.structure);
        PlacedOccurrence placed;
        placed.structure = reference.structure;
        placed.occurrence = reference.occurrence;
        placed.parent = parent;
        placed.depth = static_cast<std::uint32_t>(path.size());
        placed.content = contentOf(reference);
        placed.style = state.style;
        placed.isRemoved = occurrence.isSuppressed || occurrence.graphics.isRemoved();
        if (parent != nullIndex) {
            placed.isRemoved = placed.isRemoved || scene.occurrences[parent].isRemoved;
            placed.world = scene.occurrences[parent].world;
        }
        if (occurrence.location)
            placed.world = multiplied(placed.world, *occurrence.location);
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
        const PlacedOccurrence placed = scene.occurrences[frame.placed];
        const ProductOccurrence& content = at(placed.content);
        const std::size_t child = frame.nextChild++;
        const State state = frame.state; // the frame moves when the path grows
        if (child < content.children.size()) {
            enter({placed.content.structure, content.children[child]}, frame.placed, state);
        } else if (child == content.children.size() && content.externalData.occurrence != nullIndex) {
            enter(content.externalData, frame.placed, state);
        } else {
            isOnPath[placed.structure][placed.occurrence] = false;
            path.pop_back();
        }
    }

    void placePart(std::uint32_t number, const State& occurrenceState)
    {
        const PlacedOccurrence placed = scene.occurrences[number];
        const FileStructure& structure = model.structures[placed.content.structure];
        const std::uint32_t partNumber = at(placed.content).part;
        if (partNumber == nullIndex)
            return;
        const Part& part = structure.parts[partNumber];
        const State partState = stateBelow(occurrenceState, part.graphics, placed.content.structure);
        std::vector<State> states(part.items.size());
        std::vector<Matrix> worlds(part.items.size());
        for (std::uint32_t item = 0; item < part.items.size(); ++item) {
            const RepresentationItem& stored = part.items[item];
            const bool isInSet = stored.set != nullIndex;
            states[item] =
                stateBelow(isInSet ? states[stored.set] : partState, stored.graphics, placed.content.structure);
            worlds[item] = isInSet ? worlds[stored.set] : placed.world;
            if (stored.coordinateSystem != nullIndex)
                worlds[item] = multiplied(worlds[item],
                                          structure.globals.coordinateSystems[stored.coordinateSystem].transformation);
            if (stored.type == EntityType::Set)
                continue;
            if (scene.items.size() >= limits.items) {
                ++tooMany;
                return;
            }
            const bool isShown =
                states[item].isShown && !placed.isRemoved && !part.graphics.isRemoved() && !stored.graphics.isRemoved();
            scene.items.push_back(
                {number, placed.content.structure, partNumber, item, worlds[item], states[item].style, isShown});
        }
    }

    const PRCModel& model;
    const SceneLimits& limits;
    PlacedScene scene;
    std::vector<Frame> path;
    std::vector<std::vector<bool>> isOnPath; ///< by structure and occurrence.
    std::uint64_t cycles = 0;
    std::uint64_t tooDeep = 0;
    std::uint64_t tooMany = 0;
};

} // namespace

PlacedScene placeScene(const PRCModel& model, const SceneLimits& limits)
{
    return Placement(model, limits).run();
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
