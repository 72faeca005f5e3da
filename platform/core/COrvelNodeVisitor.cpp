#include "platform/core/COrvelNodeVisitor.h"

#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelSceneNode.h"

#include <vector>

namespace Orvel
{

void COrvelNodeVisitor::TraverseDocument(COrvelDocument* document)
{
    if (!document)
        return;
    std::vector<COrvelSceneNode*> roots;
    document->ListRootSceneNodes(roots);
    for (COrvelSceneNode* const root : roots)
        Traverse(root, COrvelMatrix(), nullptr);
}

void COrvelNodeVisitor::Traverse(COrvelSceneNode* node, const COrvelMatrix&, COrvelSceneNode*)
{
    // A walk along the links rather than a recursion: a chain of a hundred thousand nodes would not fit the stack.
    for (COrvelSceneNode* visited = node; visited;) {
        const bool goOn = VisitSceneNode(visited);
        visited = visited->NextInSubtree(node, !goOn);
    }
}

} // namespace Orvel
