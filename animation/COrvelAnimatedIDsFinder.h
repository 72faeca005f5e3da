#pragma once

#include "animation/Export.h"
#include "platform/core/COrvelID.h"
#include "platform/core/COrvelNodeVisitor.h"

#include <set>

namespace Orvel
{

/// Collects the animated ids of a scene tree from the process-wide manager.
class ORVEL_ANIMATION_API COrvelAnimatedIDsFinder final : public COrvelNodeVisitor
{
public:
    /// What is collected: transforms, materials and vertex tables.
    static constexpr int typeMask = 324;

    /// @param newIDs receives the ids; must outlive the finder.
    explicit COrvelAnimatedIDsFinder(std::set<COrvelID>& newIDs)
        : ids(&newIDs)
    {}

    /// @return false for a deleted node, whose subtree is then left out.
    bool VisitSceneNode(COrvelSceneNode* node) override;

private:
    std::set<COrvelID>* ids;
};

} // namespace Orvel
