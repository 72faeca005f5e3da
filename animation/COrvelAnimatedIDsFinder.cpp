#include "animation/COrvelAnimatedIDsFinder.h"

#include "animation/COrvelKeyFrameManager.h"
#include "platform/core/COrvelSceneNode.h"
#include "platform/core/EntityTypes.h"

namespace Orvel
{

static_assert(COrvelAnimatedIDsFinder::typeMask ==
              (eEntityType_VectorsTable | eEntityType_Transform | eEntityType_Material));

bool COrvelAnimatedIDsFinder::VisitSceneNode(COrvelSceneNode* node)
{
    if (node->IsDeleted())
        return false;
    COrvelKeyFrameManager::Instance()->CollectAnimatedIDs(node, *ids, typeMask, true);
    return true;
}

} // namespace Orvel
