#pragma once

#include "platform/core/COrvelColor.h"
#include "platform/core/COrvelCommonBasicMaterial.h"
#include "platform/core/Export.h"

#include <optional>
#include <vector>

namespace Orvel
{

/// Looks given by four colours and an opacity: what every other kind can be approximated by.
///
/// Channels run from 0 to 1 and are kept as they are set.
class ORVEL_CORE_API COrvelBasicGeneralMaterial : public COrvelCommonBasicMaterial
{
public:
    /// Ambient and diffuse light grey, emissive and specular black, opaque.
    COrvelBasicGeneralMaterial();
    /// @return new, owned by the caller.
    static COrvelBasicGeneralMaterial* Create();

    COrvelColor AmbientColor() const { return ambient; }
    COrvelColor DiffuseColor() const { return diffuse; }
    COrvelColor EmissiveColor() const { return emissive; }
    COrvelColor SpecularColor() const { return specular; }
    void SetAmbientColor(const COrvelColor& color) { ambient = color; }
    void SetDiffuseColor(const COrvelColor& color) { diffuse = color; }
    void SetEmissiveColor(const COrvelColor& color) { emissive = color; }
    void SetSpecularColor(const COrvelColor& color) { specular = color; }

    /// Whether Opacity means anything; without it the surface is opaque.
    bool HasOpacity() const { return opacity.has_value(); }
    /// 0 invisible, 1 opaque; 1 without an opacity.
    double Opacity() const { return opacity.value_or(1.0); }
    void SetOpacity(double newOpacity) { opacity = newOpacity; }
    void RemoveOpacity() { opacity.reset(); }

    COrvelBasicMaterial* Clone() const override;
    COrvelString KindName() const override;
    /// The material itself.
    COrvelBasicGeneralMaterial* ApproximateToGeneralMaterial() override;

protected:
    void ListFields(std::vector<COrvelField>& fields) override;

private:
    COrvelColor ambient;
    COrvelColor diffuse;
    COrvelColor emissive;
    COrvelColor specular;
    std::optional<double> opacity;
};

} // namespace Orvel
