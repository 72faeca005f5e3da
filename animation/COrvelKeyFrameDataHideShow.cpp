#include "animation/COrvelKeyFrameDataHideShow.h"

#include "platform/core/COrvelNodePath.h"
#include "platform/core/COrvelSceneNode.h"

#include <vector>

namespace Orvel
{

COrvelKeyFrameDataHideShow::COrvelKeyFrameDataHideShow(const COrvelID& id, bool newHidden)
    : COrvelKeyFrameData(id)
    , hidden(newHidden)
{}

COrvelKeyFrameDataHideShow* COrvelKeyFrameDataHideShow::CreateHideShowKeyFrameData(const COrvelID& id, bool hidden)
{
    return new COrvelKeyFrameDataHideShow(id, hidden);
}

void COrvelKeyFrameDataHideShow::ApplyToEntity()
{
    auto* const node = dynamic_cast<COrvelSceneNode*>(AnimatedEntityID().Entity());
    if (!node)
        return;
    std::vector<COrvelSceneNode*> trees;
    // What is hidden already needs nothing when hiding, but is what showing is about.
    COrvelSceneNode::ListAllSelectedSceneTrees({node->NodePathToRoot(true)}, trees, !hidden, true);
    for (COrvelSceneNode* const tree : trees) {
        if (hidden)
            tree->Hide();
        else
            tree->UnHide();
    }
}

COrvelKeyFrameDataHideShow* COrvelKeyFrameDataHideShow::Clone(bool atWorkingFrame) const
{
    if (!atWorkingFrame)
        return new COrvelKeyFrameDataHideShow(*this);
    auto* const snapshot = new COrvelKeyFrameDataHideShow(COrvelID(), hidden);
    MakeSnapshot(*snapshot);
    return snapshot;
}

} // namespace Orvel
