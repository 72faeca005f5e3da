#pragma once

#include "animation/COrvelKeyFrameDataTransformCamera.h"

namespace Orvel
{

/// A camera that visits a grid of views round one point, one view a frame: on a circle, a dome or a sphere.
class ORVEL_ANIMATION_API COrvelKeyFrameDataTransformSphericalCamera : public COrvelKeyFrameDataTransformCamera
{
public:
    /// The numbers are stored in archives.
    enum enumGridType : int
    {
        eGridType_RoundTable = 0,
        eGridType_Hemispherical = 1,
        eGridType_Spherical = 2
    };

    /// A data with the orbit flag and a round-table grid; the other grids are centred on what the camera looks at.
    ///
    /// @return new, reference count 0.
    static COrvelKeyFrameDataTransformSphericalCamera*
    CreateSphericalCameraKeyFrameData(const COrvelID& id, const COrvelBasicCamera& camera);

    void RestoreFromCopy(COrvelObject* copy) override;
    /// The members of COrvelDataMembersManager, then the kind of grid, where it starts and what it is made of. A new
    /// number of views sets the end of the range.
    void* DataMemberSearch(int index, int& type, COrvelString& name, bool apply) override;
    bool ReadFromArchive(COrvelArchiveBase& archive) override;
    bool WriteIntoArchive(COrvelArchiveBase& archive) override;
    int Type() const override { return eKeyFrameDataType_TransformSphericalCamera; }
    COrvelKeyFrameDataTransformSphericalCamera* Clone(bool atWorkingFrame) const override;
    /// The view at EffectiveFrame().
    COrvelBasicCamera BasicCamera() const override;

    /// One of enumGridType.
    int GridType() const { return gridType; }
    void SetGridType(int newGridType) { gridType = newGridType; }
    /// Rows and columns are stored as given; see CameraGrid for the smallest ones that a grid has.
    int Rows() const { return rows; }
    void SetRows(int newRows) { rows = newRows; }
    int Columns() const { return columns; }
    void SetColumns(int newColumns) { columns = newColumns; }
    bool VerticalWrap() const { return verticalWrap; }
    void SetVerticalWrap(bool wrap) { verticalWrap = wrap; }
    const COrvel3DVertex& Centre() const { return centre; }
    void SetCentre(const COrvel3DVertex& point) { centre = point; }

protected:
    COrvelKeyFrameDataTransformSphericalCamera(const COrvelID& id, const COrvelBasicCamera& camera);
    COrvelKeyFrameDataTransformSphericalCamera(const COrvelKeyFrameDataTransformSphericalCamera&) = default;
    COrvelKeyFrameDataTransformSphericalCamera& operator=(const COrvelKeyFrameDataTransformSphericalCamera&) = default;

private:
    void* GridMember(int position, int& type, COrvelString& name, bool apply);
    void FitEndFrame();

    int gridType = eGridType_RoundTable;
    int rows = 1;
    int columns = 1;
    bool verticalWrap = false;
    COrvel3DVertex centre;
};

} // namespace Orvel
