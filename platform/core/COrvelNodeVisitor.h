#pragma once

#include "platform/core/COrvelMatrix.h"
#include "platform/core/Export.h"

namespace Orvel
{

class COrvelDocument;
class COrvelSceneNode;

/// Walks scene trees depth first. The order of the virtual functions is relied on; there is no virtual destructor, so
/// a visitor is never destroyed through this base.
class ORVEL_CORE_API COrvelNodeVisitor
{
public:
    /// Called for every node that the walk reaches, deleted ones included.
    ///
    /// @return false leaves this node's subtree out; the walk goes on with its siblings.
    virtual bool VisitSceneNode(COrvelSceneNode* node) = 0;
    /// Walks from every root of the document; null does nothing.
    virtual void TraverseDocument(COrvelDocument* document);
    /// Visits `node`, then its children in order, depth first; null does nothing. The depth of the tree is not limited.
    ///
    /// @param matrix world matrix of the parent, for visitors that override this operation.
    /// @param parent null for a root.
    virtual void Traverse(COrvelSceneNode* node, const COrvelMatrix& matrix, COrvelSceneNode* parent);

protected:
    ~COrvelNodeVisitor() = default;
};

} // namespace Orvel
