#pragma once

#include "animation/COrvelKeyFrameData.h"

#include <utility>
#include <vector>

namespace Orvel
{

/// The weight that a COrvelGeometry has as a morph target of a COrvel3DObject.
class ORVEL_ANIMATION_API COrvelKeyFrameDataMorph : public COrvelKeyFrameData
{
public:
    /// @param id     of the target geometry.
    /// @param object of the 3D object that is blended.
    /// @return new, reference count 0.
    static COrvelKeyFrameDataMorph* CreateMorphKeyFrameData(const COrvelID& id, const COrvelID& object, double weight);

    /// Nothing in archives older than this kind of data.
    bool ArchiveReadWrite(COrvelArchiveBase& archive) override;
    int Type() const override { return eKeyFrameDataType_Morph; }
    void RestoreEntity(COrvelKeyFrameManager*) override {}
    /// Sets the weight in the object's morphing table.
    void ApplyToEntity() override;
    COrvelKeyFrameDataMorph* Clone(bool atWorkingFrame) const override;

    double Weight() const { return weight; }
    void SetWeight(double newWeight) { weight = newWeight; }
    const COrvelID& ObjectID() const { return objectID; }
    void SetObjectID(const COrvelID& id) { objectID = id; }
    /// One weight for each target of an object, as old archives hold them; otherwise empty.
    const std::vector<double>& Weights() const { return weights; }
    void SetWeights(std::vector<double> newWeights) { weights = std::move(newWeights); }

protected:
    COrvelKeyFrameDataMorph(const COrvelID& id, const COrvelID& object, double newWeight);
    COrvelKeyFrameDataMorph(const COrvelKeyFrameDataMorph&) = default;
    COrvelKeyFrameDataMorph& operator=(const COrvelKeyFrameDataMorph&) = default;

private:
    std::vector<double> weights;
    COrvelID objectID;
    double weight = 0.0;
};

} // namespace Orvel
