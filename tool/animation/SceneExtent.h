#pragma once

#include "platform/core/COrvel3DVertex.h"

namespace Orvel
{
class COrvelDocument;
class COrvelSceneNode;
} // namespace Orvel

namespace Orvel::Animate
{

/// The box around a scene at rest, in world coordinates.
struct SceneExtent
{
    COrvel3DVertex low;
    COrvel3DVertex high;

    [[nodiscard]] COrvel3DVertex Centre() const { return (low + high) * 0.5; }
    [[nodiscard]] double Diagonal() const { return (high - low).Length(); }
};

/// Around the shapes of all objects; where there are none, around the places of all nodes.
[[nodiscard]] SceneExtent MeasureScene(const COrvelDocument& document);

/// The largest factor by which lengths in the node's local matrix grow up to the world.
[[nodiscard]] double ScaleAbove(const COrvelSceneNode& node);

} // namespace Orvel::Animate
