#pragma once

#include "platform/core/COrvelBasicPath.h"
#include "platform/core/COrvelSceneNode.h"
#include "platform/core/Export.h"

#include <optional>

namespace Orvel
{

/// A curve in the scene, given in the coordinates of its node.
class ORVEL_CORE_API COrvelLinePath : public COrvelSceneNode
{
public:
    static COrvelLinePath* Create(COrvelDocument* document, COrvelString name = {});

    /// The curve; null when there is none. Owned by the node, valid until it is replaced.
    const COrvelBasicPath* BasicPath() const { return path ? &*path : nullptr; }
    void SetBasicPath(COrvelBasicPath newPath);
    void RemoveBasicPath() { path.reset(); }

protected:
    COrvelLinePath(COrvelDocument* document, COrvelString name);

private:
    std::optional<COrvelBasicPath> path;
};

} // namespace Orvel
