#pragma once

#include "platform/core/COrvelColor.h"
#include "platform/core/COrvelDataMembersManager.h"
#include "platform/core/COrvelStructureDescription.h"
#include "platform/core/Export.h"

#include <vector>

namespace Orvel
{

/// The values of a light, with a name: base of all kinds of lights. Where it stands is its light source's matter; it
/// shines along the negative z axis there.
class ORVEL_CORE_API COrvelBasicLight : public COrvelDataMembersManager
{
public:
    using Factory = COrvelBasicLight* (*)();

    COrvelColor Color() const { return color; }
    void SetColor(const COrvelColor& newColor) { color = newColor; }
    /// Factor on the colour; 1 unless set.
    double Intensity() const { return intensity; }
    void SetIntensity(double newIntensity) { intensity = newIntensity; }

    /// @return a new copy, owned by the caller.
    virtual COrvelBasicLight* Clone() const = 0;
    /// Name of the class of light, by which CreateBasicLight makes a new one.
    virtual COrvelString KindName() const = 0;
    COrvelObject* MakeCopy() override;

    /// A blend of this light and another: numbers and colours linearly, the name from the nearer end.
    ///
    /// @param t 0 for this light, 1 for `to`.
    /// @return new, owned by the caller; null when `to` is null or of another kind.
    virtual COrvelBasicLight* Interpolate(const COrvelBasicLight* to, double t) const;

    /// @return a new light of that kind, owned by the caller; null for an unknown kind.
    static COrvelBasicLight* CreateBasicLight(const COrvelString& kind);
    /// Makes a further kind known to CreateBasicLight; the last registration of a name counts.
    static void RegisterKind(const COrvelString& kind, Factory factory);

    // --- archive
    //
    // A holder stores the kind name, the structure description and then the light itself.

    /// The stored fields of this light, in their order: what a reader that lacks this kind goes by.
    COrvelStructureDescription StructureDescription();
    /// Reads a light of any kind: fields that this light has under the same name and type take their values, others are
    /// passed over.
    bool ReadDescribed(COrvelArchiveBase& archive, const COrvelStructureDescription& description);

    /// Name, display name, then the fields.
    bool ReadFromArchive(COrvelArchiveBase& archive) override;
    bool WriteIntoArchive(COrvelArchiveBase& archive) override;

protected:
    COrvelBasicLight() = default;
    COrvelBasicLight(const COrvelBasicLight&) = default;
    COrvelBasicLight& operator=(const COrvelBasicLight&) = default;

    /// Appends the values that make up the light; an override calls this one first.
    virtual void ListFields(std::vector<COrvelField>& fields);

private:
    std::vector<COrvelField> Fields();

    COrvelColor color{1.0, 1.0, 1.0, 1.0};
    double intensity = 1.0;
};

/// Shines from one point in all directions.
class ORVEL_CORE_API COrvelBasicPointLight : public COrvelBasicLight
{
public:
    /// Distance in scene units beyond which nothing is lit; 0, the default, for no limit.
    double Range() const { return range; }
    void SetRange(double newRange) { range = newRange; }

    COrvelBasicLight* Clone() const override;
    COrvelString KindName() const override;

protected:
    void ListFields(std::vector<COrvelField>& fields) override;

private:
    double range = 0.0;
};

/// Shines from one point into a cone.
class ORVEL_CORE_API COrvelBasicSpotLight : public COrvelBasicPointLight
{
public:
    /// Angles between the axis and where the light begins to fade, and where it ends.
    double InnerAngleInDegrees() const { return innerAngleInDegrees; }
    double OuterAngleInDegrees() const { return outerAngleInDegrees; }
    void SetAnglesInDegrees(double inner, double outer);

    COrvelBasicLight* Clone() const override;
    COrvelString KindName() const override;

protected:
    void ListFields(std::vector<COrvelField>& fields) override;

private:
    double innerAngleInDegrees = 0.0;
    double outerAngleInDegrees = 45.0;
};

/// Shines in one direction from infinitely far away.
class ORVEL_CORE_API COrvelBasicDirectionalLight : public COrvelBasicLight
{
public:
    COrvelBasicLight* Clone() const override;
    COrvelString KindName() const override;
};

} // namespace Orvel
