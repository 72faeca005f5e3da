#include "tool/import/MergeParts.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <utility>

namespace Orvel::Import
{
namespace
{

/// Indices of points, and of corners, are stored in 32 bits.
constexpr std::size_t MostNumbered = std::numeric_limits<std::uint32_t>::max();

class PartMerger
{
public:
    /// @param scene not owned; must outlive this object.
    explicit PartMerger(ImportedScene& scene);

    void MergeAll();

private:
    /// Parts can be joined when they agree in this.
    struct Kind
    {
        std::string name;
        Index material = None;
        Index variants = None;
        bool hasNormals = false;
        bool hasCoordinates = false;
        bool welded = false;

        auto operator<=>(const Kind&) const = default;
    };
    /// Parts that become one, in the order of the file.
    struct Group
    {
        std::vector<ImportedPart> parts;
        std::size_t points = 0;
        std::size_t corners = 0;
    };

    void MergeNode(ImportedNode& node);
    [[nodiscard]] bool CanJoinOthers(const ImportedPart& part) const;
    [[nodiscard]] Kind KindOf(const ImportedNode& node, const ImportedPart& part) const;
    ImportedPart Join(const Group& group);
    void AppendGeometries(const Group& group);
    void AppendCoordinates(const Group& group);

    ImportedGeometry& Geometry(const ImportedPart& part) const
    {
        return scene.geometries[static_cast<std::size_t>(part.geometry)];
    }
    std::vector<double>& Coordinates(const ImportedPart& part) const
    {
        return scene.textureCoordinates[static_cast<std::size_t>(part.textureCoordinates)].values;
    }

    ImportedScene& scene;
    std::vector<std::size_t> geometryUses;
    std::vector<std::size_t> coordinateUses;
};

template <class T>
void MoveToEnd(std::vector<T>& from, std::vector<T>& to)
{
    to.insert(to.end(), from.begin(), from.end());
    from = {};
}

PartMerger::PartMerger(ImportedScene& theScene)
    : scene(theScene)
    , geometryUses(theScene.geometries.size(), 0)
    , coordinateUses(theScene.textureCoordinates.size(), 0)
{
    for (const ImportedNode& node : scene.nodes) {
        for (const ImportedPart& part : node.parts) {
            if (part.geometry != None)
                ++geometryUses[static_cast<std::size_t>(part.geometry)];
            if (part.textureCoordinates != None)
                ++coordinateUses[static_cast<std::size_t>(part.textureCoordinates)];
        }
    }
}

void PartMerger::MergeAll()
{
    for (ImportedNode& node : scene.nodes) {
        if (node.parts.size() > 1)
            MergeNode(node);
    }
}

void PartMerger::MergeNode(ImportedNode& node)
{
    std::vector<Group> groups;
    std::map<Kind, std::size_t> groupOfKind;
    for (ImportedPart& part : node.parts) {
        if (!CanJoinOthers(part)) {
            groups.push_back({{std::move(part)}});
            continue;
        }
        const std::size_t points = Geometry(part).positions.size() / 3;
        const std::size_t corners = Geometry(part).triangles.size();
        const auto [place, isNew] = groupOfKind.emplace(KindOf(node, part), groups.size());
        const bool fits = !isNew && points <= MostNumbered - groups[place->second].points &&
                          corners <= MostNumbered - groups[place->second].corners;
        if (!fits) {
            place->second = groups.size();
            groups.emplace_back();
        }
        Group& group = groups[place->second];
        group.parts.push_back(std::move(part));
        group.points += points;
        group.corners += corners;
    }
    node.parts.clear();
    for (const Group& group : groups)
        node.parts.push_back(Join(group));
}

bool PartMerger::CanJoinOthers(const ImportedPart& part) const
{
    if (part.geometry == None || Geometry(part).triangles.empty())
        return false;
    return geometryUses[static_cast<std::size_t>(part.geometry)] == 1 &&
           (part.textureCoordinates == None || coordinateUses[static_cast<std::size_t>(part.textureCoordinates)] == 1);
}

PartMerger::Kind PartMerger::KindOf(const ImportedNode& node, const ImportedPart& part) const
{
    const ImportedGeometry& geometry = Geometry(part);
    return {PartName(node, part, scene.materials), part.material,  part.variants, !geometry.normals.empty(),
            part.textureCoordinates != None,       geometry.welded};
}

/// @return the first part, which has all the others' data now.
ImportedPart PartMerger::Join(const Group& group)
{
    if (group.parts.size() > 1) {
        AppendCoordinates(group);
        AppendGeometries(group);
    }
    return group.parts.front();
}

void PartMerger::AppendGeometries(const Group& group)
{
    ImportedGeometry& whole = Geometry(group.parts.front());
    whole.positions.reserve(3 * group.points);
    whole.normals.reserve(whole.normals.empty() ? 0 : 3 * group.points);
    whole.triangles.reserve(group.corners);
    for (std::size_t i = 1; i < group.parts.size(); ++i) {
        ImportedGeometry& geometry = Geometry(group.parts[i]);
        const auto firstPoint = static_cast<std::uint32_t>(whole.positions.size() / 3);
        for (const std::uint32_t corner : geometry.triangles)
            whole.triangles.push_back(firstPoint + corner);
        geometry.triangles = {};
        MoveToEnd(geometry.positions, whole.positions);
        MoveToEnd(geometry.normals, whole.normals);
    }
}

void PartMerger::AppendCoordinates(const Group& group)
{
    if (group.parts.front().textureCoordinates == None)
        return;
    std::vector<double>& whole = Coordinates(group.parts.front());
    whole.reserve(2 * group.points);
    for (std::size_t i = 1; i < group.parts.size(); ++i)
        MoveToEnd(Coordinates(group.parts[i]), whole);
}

} // namespace

const std::string& PartName(const ImportedNode& node, const ImportedPart& part,
                            const std::vector<ImportedMaterial>& materials)
{
    const bool hasNoName = part.name.empty() || (part.material != None &&
                                                 part.name == materials[static_cast<std::size_t>(part.material)].name);
    return hasNoName ? node.name : part.name;
}

void MergeParts(ImportedScene& scene)
{
    PartMerger(scene).MergeAll();
}

} // namespace Orvel::Import
