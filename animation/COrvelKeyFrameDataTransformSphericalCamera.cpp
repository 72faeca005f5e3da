#include "animation/COrvelKeyFrameDataTransformSphericalCamera.h"

#include "animation/Angles.h"
#include "animation/CameraPaths.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace Orvel
{

namespace
{

const char* GridName(int gridType)
{
    switch (gridType) {
    case COrvelKeyFrameDataTransformSphericalCamera::eGridType_Hemispherical:
        return "Hemispherical";
    case COrvelKeyFrameDataTransformSphericalCamera::eGridType_Spherical:
        return "Spherical";
    default:
        return "Round Table";
    }
}

} // namespace

COrvelKeyFrameDataTransformSphericalCamera::COrvelKeyFrameDataTransformSphericalCamera(const COrvelID& id,
                                                                                       const COrvelBasicCamera& camera)
    : COrvelKeyFrameDataTransformCamera(id, camera)
    , centre(camera.LookAt())
{
    SetOrbit(true);
}

COrvelKeyFrameDataTransformSphericalCamera*
COrvelKeyFrameDataTransformSphericalCamera::CreateSphericalCameraKeyFrameData(const COrvelID& id,
                                                                              const COrvelBasicCamera& camera)
{
    return new COrvelKeyFrameDataTransformSphericalCamera(id, camera);
}

void COrvelKeyFrameDataTransformSphericalCamera::RestoreFromCopy(COrvelObject* copy)
{
    if (const auto* const other = dynamic_cast<const COrvelKeyFrameDataTransformSphericalCamera*>(copy)) {
        const KeepEntityIDs keep(*this);
        *this = *other;
    }
}

void* COrvelKeyFrameDataTransformSphericalCamera::DataMemberSearch(int index, int& type, COrvelString& name, bool apply)
{
    int inherited = 0;
    // The members of a single camera are not among those of a grid of cameras.
    // NOLINTBEGIN(bugprone-parent-virtual-call)
    COrvelDataMembersManager::DataMemberSearch(countCommand, inherited, name, false);
    const bool hasRows = gridType != eGridType_RoundTable;
    const bool hasWrap = gridType == eGridType_Spherical;
    const int count = inherited + 3 + (hasRows ? 1 : 0) + (hasWrap ? 1 : 0);
    if (index == countCommand) {
        type = count;
        return nullptr;
    }
    if (index < inherited)
        return COrvelDataMembersManager::DataMemberSearch(index, type, name, apply);
    // NOLINTEND(bugprone-parent-virtual-call)
    return index < count ? GridMember(index - inherited, type, name, apply) : nullptr;
}

void* COrvelKeyFrameDataTransformSphericalCamera::GridMember(int position, int& type, COrvelString& name, bool apply)
{
    switch (position) {
    case 0: {
        // One text for all data, made anew whenever it is asked for: it is shown, not changed.
        static COrvelString gridName;
        gridName = GridName(gridType);
        type = eDataMemberType_Text;
        name = "Type";
        return &gridName;
    }
    case 1: {
        void* const member = FrameMember(0, type, name, apply);
        if (apply)
            FitEndFrame();
        return member;
    }
    case 2:
        if (apply && columns != 0)
            FitEndFrame();
        return IntMember(columns, "Columns", type, name);
    case 3:
        if (apply && rows >= 2)
            FitEndFrame();
        return IntMember(rows, "Rows", type, name);
    default:
        // Views are computed whenever they are asked for, so a new value needs no reaction.
        return BoolMember(verticalWrap, "Vertical Wrap", type, name);
    }
}

void COrvelKeyFrameDataTransformSphericalCamera::FitEndFrame()
{
    // A frame for each view; a grid without views keeps one frame.
    const std::int64_t views = std::max<std::int64_t>(1, std::int64_t{rows} * columns);
    SetEndFrame(static_cast<int>(std::min<std::int64_t>(StartFrame() + views - 1, std::numeric_limits<int>::max())),
                false);
}

COrvelKeyFrameDataTransformSphericalCamera* COrvelKeyFrameDataTransformSphericalCamera::Clone(bool) const
{
    return new COrvelKeyFrameDataTransformSphericalCamera(*this);
}

COrvelBasicCamera COrvelKeyFrameDataTransformSphericalCamera::BasicCamera() const
{
    MotionStep motion = Motion();
    const CameraGrid grid{centre, DistanceToTarget(), FieldOfView(), rows, columns, verticalWrap};
    switch (gridType) {
    case eGridType_Hemispherical:
        return HemisphericalGridCamera(grid, motion.step);
    case eGridType_Spherical:
        return SphericalGridCamera(grid, motion.step);
    default:
        // At constant speed whatever the data's own frames of constant speed are, and the other way round than an
        // orbit.
        motion.constantSpeedStart = -1;
        motion.constantSpeedEnd = -1;
        return OrbitCamera(BaseCamera(), motion, -Radians(AngleInDegrees()), false);
    }
}

} // namespace Orvel
