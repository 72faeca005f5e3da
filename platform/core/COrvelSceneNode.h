#pragma once

#include "platform/core/COrvelEntity.h"
#include "platform/core/COrvelMatrix.h"
#include "platform/core/COrvelNodePath.h"
#include "platform/core/COrvelUsers.h"
#include "platform/core/Export.h"

#include <vector>

namespace Orvel
{

class COrvelSkeletonJoint;
class COrvelTransform;

/// A node of the scene tree: a group, or the base of everything that has a place in the scene.
///
/// Nodes form trees through AddChild; the document owns them, parents do not. Every operation that changes the tree
/// takes constant time when the node that moves has no children.
class ORVEL_CORE_API COrvelSceneNode : public COrvelEntity
{
public:
    static COrvelSceneNode* Create(COrvelDocument* document, COrvelString name = {});
    ~COrvelSceneNode() override;

    // --- placement

    /// Matrix of the local transform; the identity without one.
    COrvelMatrix LocalMatrix() const;
    /// Product of the local matrices from the root down to this node, its own included.
    COrvelMatrix LocalToWorldMatrix() const;
    /// Null when the node has none; several nodes may share one.
    COrvelTransform* LocalTransform() const { return localTransform.Get(); }
    /// @param transform not owned; null for none.
    void SetLocalTransform(COrvelTransform* transform);
    /// Loads `matrix` into the local transform, which is made if there is none. Other nodes that share the transform
    /// move too.
    void SetLocalMatrix(const COrvelMatrix& matrix);

    // --- tree

    /// Replaces `nodes` with the direct children, in order.
    ///
    /// @param includeDeleted false leaves out deleted children.
    void Children(std::vector<COrvelSceneNode*>& nodes, bool includeDeleted) const;
    /// The direct children, deleted ones included, to be walked without copying; the walk must not change them.
    const COrvelUsers<COrvelSceneNode, COrvelSceneNode>& Children() const { return children; }
    /// Null for a root and for a node that stands nowhere.
    COrvelSceneNode* Parent() const { return parent.Get(); }
    /// The sibling after this node; null for the last child and for roots.
    COrvelSceneNode* NextSibling() const { return parent.Next(); }
    /// Puts `node` behind the last child, taking it from its parent or from its document's roots.
    ///
    /// @return false, and nothing changes, for null and for a node that this one descends from (itself included). A
    ///         child of this node keeps its place.
    bool AddChild(COrvelSceneNode* node);
    /// @return false when `node` is no child of this node. The node stays alive and stands nowhere.
    bool RemoveChild(COrvelSceneNode* node);
    /// True when `other` is an ancestor, at any depth.
    ///
    /// @param includeThis true: a node counts as child of itself.
    bool IsChildOf(const COrvelSceneNode* other, bool includeThis) const;
    /// The node that follows this one in a depth-first walk through the subtree of `top`; null at its end.
    COrvelSceneNode* NextInSubtree(const COrvelSceneNode* top, bool skipChildren = false) const;
    /// The nearest joint going up from this node, itself included; null when there is none.
    COrvelSkeletonJoint* GetNearestJointParent();

    // --- paths

    /// Root-first path to this node; without this node itself when `includeNode` is false.
    COrvelNodePath NodePathToRoot(bool includeNode);
    /// The same, replacing `path`.
    void NodePathToRoot(COrvelNodePath& path, bool includeNode);
    /// Longest common prefix of root-first paths; empty for an empty list and for nodes under different roots.
    static COrvelNodePath NearestCommonParent(const std::vector<COrvelNodePath>& paths);
    /// Replaces `trees` with the scene trees that the paths name: the lower end of each, null ends left out.
    ///
    /// @param includeHidden false leaves out nodes that are hidden already.
    /// @param wholeTrees    true: a tree stands for its members; false: every member of the tree is listed too.
    static void ListAllSelectedSceneTrees(const std::vector<COrvelNodePath>& paths,
                                          std::vector<COrvelSceneNode*>& trees, bool includeHidden, bool wholeTrees);

    // --- visibility

    /// The node's own mark; a hidden parent does not show in it.
    bool IsHidden() const { return hidden; }
    void Hide() { hidden = true; }
    void UnHide() { hidden = false; }

protected:
    COrvelSceneNode(COrvelDocument* document, int type, COrvelString name);

private:
    friend class COrvelDocument;

    COrvelUsers<COrvelSceneNode, COrvelSceneNode> children;
    COrvelUse<COrvelSceneNode, COrvelSceneNode> parent;
    COrvelUse<COrvelSceneNode, COrvelDocument> rootOf;
    COrvelUse<COrvelSceneNode, COrvelTransform> localTransform;
    bool hidden = false;
};

} // namespace Orvel
