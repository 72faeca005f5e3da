#pragma once

#include "platform/core/COrvelMatrix.h"
#include "tool/animation/KeyReduction.h"

#include <vector>

namespace Orvel
{
class COrvelKeyFrameManager;
class COrvelSceneNode;
} // namespace Orvel

namespace Orvel::Animate
{

/// How far a reduced motion may stray from the sampled one at any frame.
struct TransformTolerance
{
    double position = 0.0;       ///< of the node's origin, in the units of its parent
    double angleInRadians = 0.0; ///< the axes may change as much as turning by this changes them
};

/// The motion of a node as the frames that are kept and their local matrices.
struct TransformKeys
{
    COrvelSceneNode* node = nullptr;    ///< has a local transform; owned by its document
    std::vector<KeyRange> ranges;       ///< empty: the node stands where it is at rest throughout
    std::vector<COrvelMatrix> matrices; ///< one for each range
};

/// @param samples the node's local matrix at each frame, from frame 0 on; not empty.
[[nodiscard]] TransformKeys ReduceTransform(COrvelSceneNode& node, const std::vector<COrvelMatrix>& samples,
                                            const TransformTolerance& tolerance);

/// Stores the keys as transform key frame data of the node's local transform.
void StoreKeys(const TransformKeys& keys, COrvelKeyFrameManager& manager);

} // namespace Orvel::Animate
