#include "tool/convert/SceneUnits.h"

#include "tool/import/UnitGroup.h"

#include <string>

namespace Orvel::Convert
{

namespace
{

constexpr double MillimetresPerMetre = 1000.0;

COrvelMatrix ToOrvel(const prc::Matrix& matrix)
{
    COrvelMatrix result;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column)
            result.M(row, column) = matrix[static_cast<std::size_t>(4 * row + column)];
    }
    return result;
}

prc::Matrix FromOrvel(const COrvelMatrix& matrix)
{
    prc::Matrix result{};
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column)
            result[static_cast<std::size_t>(4 * row + column)] = matrix.M(row, column);
    }
    return result;
}

/// What the group above all others does, if it is the one for units and axes.
std::optional<Import::UnitChange> UnitGroupOf(const MeshScene& scene)
{
    if (scene.nodes.empty() || scene.nodes[0].mesh != None)
        return std::nullopt;
    for (std::size_t i = 1; i < scene.nodes.size(); ++i) {
        if (scene.nodes[i].parent == None)
            return std::nullopt;
    }
    return Import::RecogniseUnitGroup(scene.nodes[0].name, ToOrvel(scene.nodes[0].transform));
}

void RemoveTop(MeshScene& scene)
{
    scene.nodes.erase(scene.nodes.begin());
    for (Node& node : scene.nodes)
        node.parent = node.parent == 0 ? None : node.parent - 1;
}

void AddTop(MeshScene& scene, const Import::UnitChange& change)
{
    for (Node& node : scene.nodes)
        node.parent = node.parent == None ? 0 : node.parent + 1;
    scene.nodes.insert(scene.nodes.begin(),
                       {std::string(Import::UnitGroupName), None, FromOrvel(Import::UnitMatrix(change)), None});
}

} // namespace

void ApplyUnits(MeshScene& scene, const UnitOptions& options)
{
    double millimetresPerUnit = options.millimetresPerUnit;
    Import::UnitChange change;
    if (const std::optional<Import::UnitChange> group = UnitGroupOf(scene)) {
        RemoveTop(scene);
        millimetresPerUnit *= group->scale;
        change.from = group->from;
    }
    if (options.toMetres) {
        change.scale = millimetresPerUnit / MillimetresPerMetre;
        change.to = change.from == Import::UpAxis::Unknown ? change.from : Import::UpAxis::Y;
    }
    change.scale = options.scale.value_or(change.scale);
    if (!change.IsIdentity() && !scene.nodes.empty())
        AddTop(scene, change);
}

} // namespace Orvel::Convert
