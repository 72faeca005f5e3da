#include "tool/animation/SceneExtent.h"

#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelMatrix.h"
#include "platform/core/COrvelSceneNode.h"
#include "platform/core/COrvelVerticiesTable.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <span>
#include <vector>

namespace Orvel::Animate
{

namespace
{

/// A box that grows; without any point in it, it is empty.
class Box
{
public:
    void Add(const COrvel3DVertex& point)
    {
        if (isEmpty) {
            extent = {point, point};
            isEmpty = false;
            return;
        }
        const auto [low, high] = extent;
        extent.low = {std::min(low.X(), point.X()), std::min(low.Y(), point.Y()), std::min(low.Z(), point.Z())};
        extent.high = {std::max(high.X(), point.X()), std::max(high.Y(), point.Y()), std::max(high.Z(), point.Z())};
    }

    /// Adds the corners of another box, placed by a matrix.
    void Add(const Box& box, const COrvelMatrix& placement)
    {
        const auto& [low, high] = box.extent;
        for (int corner = 0; corner < 8 && !box.isEmpty; ++corner)
            Add(placement * COrvel3DVertex((corner & 1) != 0 ? high.X() : low.X(),
                                           (corner & 2) != 0 ? high.Y() : low.Y(),
                                           (corner & 4) != 0 ? high.Z() : low.Z()));
    }

    [[nodiscard]] bool IsEmpty() const { return isEmpty; }
    [[nodiscard]] const SceneExtent& Extent() const { return extent; }

private:
    SceneExtent extent;
    bool isEmpty = true;
};

/// Measures each table once: many objects may share it.
class TableBoxes
{
public:
    const Box& BoxOf(const COrvelVerticiesTable* table)
    {
        const auto [place, isNew] = boxes.try_emplace(table);
        if (isNew && table) {
            const std::span<const double> values = table->Values();
            for (std::size_t i = 0; i + 2 < values.size(); i += 3)
                place->second.Add({values[i], values[i + 1], values[i + 2]});
        }
        return place->second;
    }

private:
    std::map<const COrvelVerticiesTable*, Box> boxes;
};

} // namespace

SceneExtent MeasureScene(const COrvelDocument& document)
{
    TableBoxes tables;
    Box shapes;
    Box places;
    std::vector<COrvelSceneNode*> roots;
    document.ListRootSceneNodes(roots);
    for (COrvelSceneNode* root : roots)
        for (COrvelSceneNode* node = root; node; node = node->NextInSubtree(root)) {
            const COrvelMatrix world = node->LocalToWorldMatrix();
            places.Add(world.Translation());
            if (const auto* const object = dynamic_cast<const COrvel3DObject*>(node); object && object->Geometry())
                shapes.Add(tables.BoxOf(object->Geometry()->VerticiesTable()), world);
        }
    return shapes.IsEmpty() ? places.Extent() : shapes.Extent();
}

double ScaleAbove(const COrvelSceneNode& node)
{
    if (!node.Parent())
        return 1.0;
    const COrvelMatrix world = node.Parent()->LocalToWorldMatrix();
    double largest = 0.0;
    for (int column = 0; column < 3; ++column)
        largest = std::max(largest, std::hypot(world.M(0, column), world.M(1, column), world.M(2, column)));
    return largest;
}

} // namespace Orvel::Animate
