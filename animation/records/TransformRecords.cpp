// What transform data and everything derived from them store behind the record of every key frame data.

#include "animation/COrvelKeyFrameDataTransformBSplineFollower.h"
#include "animation/COrvelKeyFrameDataTransformRoundTable.h"
#include "animation/COrvelKeyFrameDataTransformSphericalCamera.h"
#include "animation/records/LayoutVersions.h"
#include "platform/core/COrvelArchiveBase.h"

namespace Orvel
{

bool COrvelKeyFrameDataTransform::WriteIntoArchive(COrvelArchiveBase& archive)
{
    return COrvelKeyFrameData::WriteIntoArchive(archive) && archive.ReadWrite(matrix, pivot);
}

bool COrvelKeyFrameDataTransform::ReadFromArchive(COrvelArchiveBase& archive)
{
    return COrvelKeyFrameData::ReadFromArchive(archive) && archive.ReadWrite(matrix) &&
           (DocumentVersion() < LayoutVersion::pivot || archive.ReadWrite(pivot));
}

// --- camera

bool COrvelKeyFrameDataTransformCamera::WriteIntoArchive(COrvelArchiveBase& archive)
{
    return COrvelKeyFrameDataTransform::WriteIntoArchive(archive) &&
           archive.ReadWrite(distanceToTarget, angleInDegrees, descend, orbit, cameraBlend) &&
           archive.ReadWrite(fieldOfView, depthOfField, depthOfFieldFStop, depthOfFieldEnabled) && WriteMotion(archive);
}

bool COrvelKeyFrameDataTransformCamera::ReadFromArchive(COrvelArchiveBase& archive)
{
    const int version = DocumentVersion();
    const COrvelBasicCamera usual;
    fieldOfView = usual.FOV();
    SetDOF(usual.DOFIsEnabled(), usual.DOF(), usual.DOFFStop());
    if (version < LayoutVersion::cameraTransform)
        return ReadWholeCamera(archive) && ReadMotion(archive);
    if (!COrvelKeyFrameDataTransform::ReadFromArchive(archive) ||
        !archive.ReadWrite(distanceToTarget, angleInDegrees, descend, orbit, cameraBlend))
        return false;
    if (version >= LayoutVersion::fieldOfView && !archive.ReadWrite(fieldOfView))
        return false;
    if (version >= LayoutVersion::depthOfField &&
        !archive.ReadWrite(depthOfField, depthOfFieldFStop, depthOfFieldEnabled))
        return false;
    return ReadMotion(archive);
}

/// The layout of files in which every camera data was an orbit.
bool COrvelKeyFrameDataTransformCamera::ReadWholeCamera(COrvelArchiveBase& archive)
{
    COrvelBasicCamera camera;
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): these files hold no record of a transform in between
    if (!COrvelKeyFrameData::ReadFromArchive(archive) || !archive.ReadWrite(descend, angleInDegrees, camera))
        return false;
    SetStoredMatrix(camera.ComputeLocalToWorld());
    distanceToTarget = camera.DistanceFromTarget();
    orbit = true;
    cameraBlend = true;
    return true;
}

// --- spherical camera

bool COrvelKeyFrameDataTransformSphericalCamera::WriteIntoArchive(COrvelArchiveBase& archive)
{
    return COrvelKeyFrameDataTransformCamera::WriteIntoArchive(archive) &&
           archive.ReadWrite(gridType, rows, columns, verticalWrap, centre);
}

bool COrvelKeyFrameDataTransformSphericalCamera::ReadFromArchive(COrvelArchiveBase& archive)
{
    return COrvelKeyFrameDataTransformCamera::ReadFromArchive(archive) &&
           archive.ReadWrite(gridType, rows, columns, verticalWrap) &&
           (DocumentVersion() < LayoutVersion::gridCentre || archive.ReadWrite(centre));
}

// --- round table

bool COrvelKeyFrameDataTransformRoundTable::WriteIntoArchive(COrvelArchiveBase& archive)
{
    return COrvelKeyFrameDataTransform::WriteIntoArchive(archive) &&
           archive.ReadWrite(reference, angleInDegrees, normal, axisFrame) && WriteMotion(archive);
}

bool COrvelKeyFrameDataTransformRoundTable::ReadFromArchive(COrvelArchiveBase& archive)
{
    return COrvelKeyFrameDataTransform::ReadFromArchive(archive) &&
           archive.ReadWrite(reference, angleInDegrees, normal) &&
           (DocumentVersion() < LayoutVersion::axisFrame || archive.ReadWrite(axisFrame)) && ReadMotion(archive);
}

// --- B-spline follower

bool COrvelKeyFrameDataTransformBSplineFollower::WriteIntoArchive(COrvelArchiveBase& archive)
{
    return COrvelKeyFrameDataTransform::WriteIntoArchive(archive) &&
           archive.ReadWrite(base, pathID, offset, reference, followedNodeID) && ArchiveConstantSpeed(archive);
}

bool COrvelKeyFrameDataTransformBSplineFollower::ReadFromArchive(COrvelArchiveBase& archive)
{
    const int version = DocumentVersion();
    if (!COrvelKeyFrameDataTransform::ReadFromArchive(archive) || !archive.ReadWrite(base) || !ReadPathID(archive) ||
        !archive.ReadWrite(offset, reference, followedNodeID))
        return false;
    if (version < LayoutVersion::followerConstantSpeed)
        SpanConstantSpeed();
    else if (!ArchiveConstantSpeed(archive))
        return false;
    if (version < LayoutVersion::easingModes) {
        SetEaseIn(ConstantSpeedStartFrame() > StartFrame() ? 1 : 0);
        SetEaseOut(ConstantSpeedEndFrame() < EndFrame() ? 2 : 0);
    }
    return true;
}

bool COrvelKeyFrameDataTransformBSplineFollower::ReadPathID(COrvelArchiveBase& archive)
{
    if (archive.Version() >= LayoutVersion::pathID)
        return archive.ReadWrite(pathID);
    int number = 0;
    if (!archive.ReadWrite(number))
        return false;
    pathID = COrvelDocumentsContainer::DocumentsContainer()->GetLinePathIDFor(number);
    return true;
}

} // namespace Orvel
