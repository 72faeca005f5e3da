#pragma once

#include "platform/core/COrvelSceneNode.h"
#include "platform/core/Export.h"

namespace Orvel
{

/// Where a joint stands in its skeleton.
enum enumJointType : int
{
    eJointType_Inner = 0,
    eJointType_Root = 1
};

/// A joint of a skeleton; the skeleton is the tree of joints below a root joint.
class ORVEL_CORE_API COrvelSkeletonJoint : public COrvelSceneNode
{
public:
    static COrvelSkeletonJoint* Create(COrvelDocument* document, COrvelString name = {},
                                       enumJointType type = eJointType_Inner);

    /// One of enumJointType.
    int GetJointType() const { return jointType; }
    void SetJointType(enumJointType type) { jointType = type; }
    /// The nearest root joint going up from this joint, itself included; null when there is none.
    COrvelSkeletonJoint* FindSkeletonRoot();

protected:
    COrvelSkeletonJoint(COrvelDocument* document, COrvelString name, enumJointType type);

private:
    enumJointType jointType;
};

} // namespace Orvel
