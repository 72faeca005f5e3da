#include "platform/core/COrvelSkeletonJoint.h"

#include <utility>

namespace Orvel
{

COrvelSkeletonJoint::COrvelSkeletonJoint(COrvelDocument* document, COrvelString name, enumJointType type)
    : COrvelSceneNode(document, eEntityType_SkeletonJoint, std::move(name))
    , jointType(type)
{}

COrvelSkeletonJoint* COrvelSkeletonJoint::Create(COrvelDocument* document, COrvelString name, enumJointType type)
{
    return new COrvelSkeletonJoint(document, std::move(name), type);
}

COrvelSkeletonJoint* COrvelSkeletonJoint::FindSkeletonRoot()
{
    for (COrvelSceneNode* node = this; node; node = node->Parent()) {
        COrvelSkeletonJoint* const joint = dynamic_cast<COrvelSkeletonJoint*>(node);
        if (joint && joint->jointType == eJointType_Root)
            return joint;
    }
    return nullptr;
}

} // namespace Orvel
