#pragma once

#include "platform/core/COrvelEntity.h"
#include "platform/core/COrvelMatrix.h"
#include "platform/core/COrvelUsers.h"
#include "platform/core/Export.h"

#include <vector>

namespace Orvel
{

class COrvel3DObject;
class COrvelSceneNode;

/// A local placement that one or several scene nodes carry.
class ORVEL_CORE_API COrvelTransform : public COrvelEntity
{
public:
    /// A new transform; the identity unless given a matrix. Never null.
    static COrvelTransform* Create(COrvelDocument* document);
    static COrvelTransform* Create(COrvelDocument* document, const COrvelMatrix& matrix);
    ~COrvelTransform() override;

    COrvelMatrix Matrix() const { return matrix; }
    void LoadMatrix(const COrvelMatrix& newMatrix) { matrix = newMatrix; }
    /// Frame in which blends of this transform are made; invertible, the identity unless set.
    COrvelMatrix UniformizationMatrix() const { return uniformization; }
    void SetUniformizationMatrix(const COrvelMatrix& newMatrix) { uniformization = newMatrix; }

    /// Replaces `nodes` with the nodes that carry this transform, in the order in which they took it.
    ///
    /// @param includeDeleted false leaves out deleted nodes.
    void ListSceneNodesReferencingThisTransform(std::vector<COrvelSceneNode*>& nodes, bool includeDeleted) const;
    /// Replaces `objects` with every 3D object in the subtrees of the nodes that carry this transform, those nodes
    /// included, depth first, each once, deleted and hidden ones included.
    void ListAll3DObjectsThisTransformAffect(std::vector<COrvel3DObject*>& objects) const;
    /// The same for light sources.
    void ListAllLightSourcesThisTransformAffect(std::vector<COrvelSceneNode*>& sources) const;

protected:
    explicit COrvelTransform(COrvelDocument* document);

private:
    friend class COrvelSceneNode;

    COrvelMatrix matrix;
    COrvelMatrix uniformization;
    COrvelUsers<COrvelSceneNode, COrvelTransform> nodesUsingThis;
};

} // namespace Orvel
