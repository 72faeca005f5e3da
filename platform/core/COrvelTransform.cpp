#include "platform/core/COrvelTransform.h"

#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelLightSource.h"
#include "platform/core/COrvelSceneNode.h"

#include <unordered_set>

namespace Orvel
{

namespace
{

/// Replaces `found` with the nodes of class Node in the subtrees of `tops`, depth first, each once.
///
/// @param shared the transform that every top, and no other node, carries.
template <class Node, class Listed>
void ListInSubtrees(const COrvelUsers<COrvelSceneNode, COrvelTransform>& tops, const COrvelTransform* shared,
                    std::vector<Listed*>& found)
{
    found.clear();
    // A top may stand inside the subtree of another one: its subtree is listed where it is reached first.
    std::unordered_set<const COrvelSceneNode*> walkedTops;
    for (COrvelSceneNode* const top : tops) {
        COrvelSceneNode* node = top;
        while (node) {
            const bool walkedBefore = node->LocalTransform() == shared && !walkedTops.insert(node).second;
            if (Node* const wanted = walkedBefore ? nullptr : dynamic_cast<Node*>(node))
                found.push_back(wanted);
            // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): the loop ends with the first null
            node = node->NextInSubtree(top, walkedBefore);
        }
    }
}

} // namespace

COrvelTransform::COrvelTransform(COrvelDocument* document)
    : COrvelEntity(document, eEntityType_Transform)
    , nodesUsingThis(*this)
{}

COrvelTransform::~COrvelTransform() = default;

COrvelTransform* COrvelTransform::Create(COrvelDocument* document)
{
    return new COrvelTransform(document);
}

COrvelTransform* COrvelTransform::Create(COrvelDocument* document, const COrvelMatrix& matrix)
{
    COrvelTransform* const transform = Create(document);
    transform->LoadMatrix(matrix);
    return transform;
}

void COrvelTransform::ListSceneNodesReferencingThisTransform(std::vector<COrvelSceneNode*>& nodes,
                                                             bool includeDeleted) const
{
    nodes.clear();
    nodes.reserve(nodesUsingThis.Count());
    for (COrvelSceneNode* const node : nodesUsingThis)
        if (includeDeleted || !node->IsDeleted())
            nodes.push_back(node);
}

void COrvelTransform::ListAll3DObjectsThisTransformAffect(std::vector<COrvel3DObject*>& objects) const
{
    ListInSubtrees<COrvel3DObject>(nodesUsingThis, this, objects);
}

void COrvelTransform::ListAllLightSourcesThisTransformAffect(std::vector<COrvelSceneNode*>& sources) const
{
    ListInSubtrees<COrvelLightSource>(nodesUsingThis, this, sources);
}

} // namespace Orvel
