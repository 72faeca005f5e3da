#include "platform/core/COrvelNodePath.h"

#include <utility>

namespace Orvel
{

COrvelNodePath::COrvelNodePath(std::vector<COrvelSceneNode*> rootFirst)
    : nodes(std::move(rootFirst))
{}

} // namespace Orvel
