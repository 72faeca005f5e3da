#include "platform/core/COrvelSceneNode.h"

#include "platform/core/COrvelSkeletonJoint.h"
#include "platform/core/COrvelTransform.h"

#include <algorithm>
#include <utility>

namespace Orvel
{

COrvelSceneNode::COrvelSceneNode(COrvelDocument* document, int type, COrvelString name)
    : COrvelEntity(document, type)
    , children(*this)
    , parent(*this)
    , rootOf(*this)
    , localTransform(*this)
{
    SetName(std::move(name));
}

COrvelSceneNode::~COrvelSceneNode() = default;

COrvelSceneNode* COrvelSceneNode::Create(COrvelDocument* document, COrvelString name)
{
    return new COrvelSceneNode(document, eEntityType_SceneNode, std::move(name));
}

COrvelMatrix COrvelSceneNode::LocalMatrix() const
{
    const COrvelTransform* const transform = LocalTransform();
    return transform ? transform->Matrix() : COrvelMatrix();
}

COrvelMatrix COrvelSceneNode::LocalToWorldMatrix() const
{
    std::vector<const COrvelSceneNode*> nodeFirst;
    for (const COrvelSceneNode* node = this; node; node = node->Parent())
        if (node->LocalTransform())
            nodeFirst.push_back(node);
    // Multiplied in path order, so that the result agrees to the last bit with the product along the path.
    COrvelMatrix world;
    std::for_each(nodeFirst.rbegin(), nodeFirst.rend(),
                  [&world](const COrvelSceneNode* node) { world *= node->LocalMatrix(); });
    return world;
}

void COrvelSceneNode::SetLocalTransform(COrvelTransform* transform)
{
    if (transform)
        localTransform.Set(transform->nodesUsingThis);
    else
        localTransform.Reset();
}

void COrvelSceneNode::SetLocalMatrix(const COrvelMatrix& matrix)
{
    if (COrvelTransform* const transform = LocalTransform())
        transform->LoadMatrix(matrix);
    else
        SetLocalTransform(COrvelTransform::Create(Document(), matrix));
}

void COrvelSceneNode::Children(std::vector<COrvelSceneNode*>& nodes, bool includeDeleted) const
{
    nodes.clear();
    nodes.reserve(children.Count());
    for (COrvelSceneNode* const child : children)
        if (includeDeleted || !child->IsDeleted())
            nodes.push_back(child);
}

bool COrvelSceneNode::AddChild(COrvelSceneNode* node)
{
    if (!node || node == this)
        return false;
    // Only a node with children can be an ancestor: building a tree downwards never walks up.
    if (node->children.Count() > 0 && IsChildOf(node, true))
        return false;
    node->rootOf.Reset();
    node->parent.Set(children);
    return true;
}

bool COrvelSceneNode::RemoveChild(COrvelSceneNode* node)
{
    if (!node || node->Parent() != this)
        return false;
    node->parent.Reset();
    return true;
}

bool COrvelSceneNode::IsChildOf(const COrvelSceneNode* other, bool includeThis) const
{
    if (!other)
        return false;
    for (const COrvelSceneNode* node = includeThis ? this : Parent(); node; node = node->Parent())
        if (node == other)
            return true;
    return false;
}

COrvelSceneNode* COrvelSceneNode::NextInSubtree(const COrvelSceneNode* top, bool skipChildren) const
{
    if (!skipChildren && children.First())
        return children.First();
    for (const COrvelSceneNode* node = this; node && node != top; node = node->Parent())
        if (COrvelSceneNode* const sibling = node->NextSibling())
            return sibling;
    return nullptr;
}

COrvelSkeletonJoint* COrvelSceneNode::GetNearestJointParent()
{
    for (COrvelSceneNode* node = this; node; node = node->Parent())
        if (COrvelSkeletonJoint* const joint = dynamic_cast<COrvelSkeletonJoint*>(node))
            return joint;
    return nullptr;
}

COrvelNodePath COrvelSceneNode::NodePathToRoot(bool includeNode)
{
    std::vector<COrvelSceneNode*> nodes;
    for (COrvelSceneNode* node = includeNode ? this : Parent(); node; node = node->Parent())
        nodes.push_back(node);
    std::reverse(nodes.begin(), nodes.end());
    return COrvelNodePath(std::move(nodes));
}

void COrvelSceneNode::NodePathToRoot(COrvelNodePath& path, bool includeNode)
{
    path = NodePathToRoot(includeNode);
}

COrvelNodePath COrvelSceneNode::NearestCommonParent(const std::vector<COrvelNodePath>& paths)
{
    if (paths.empty())
        return {};
    const COrvelNodePath& first = paths.front();
    std::size_t common = first.Count();
    for (const COrvelNodePath& path : paths) {
        common = std::min(common, path.Count());
        const auto firstEnd = first.begin() + static_cast<std::ptrdiff_t>(common);
        common = static_cast<std::size_t>(std::mismatch(first.begin(), firstEnd, path.begin()).first - first.begin());
    }
    return COrvelNodePath({first.begin(), first.begin() + static_cast<std::ptrdiff_t>(common)});
}

void COrvelSceneNode::ListAllSelectedSceneTrees(const std::vector<COrvelNodePath>& paths,
                                                std::vector<COrvelSceneNode*>& trees, bool includeHidden,
                                                bool wholeTrees)
{
    trees.clear();
    for (const COrvelNodePath& path : paths) {
        COrvelSceneNode* const top = path.SceneNode();
        for (COrvelSceneNode* node = top; node; node = wholeTrees ? nullptr : node->NextInSubtree(top))
            if (includeHidden || !node->IsHidden())
                trees.push_back(node);
    }
}

} // namespace Orvel
