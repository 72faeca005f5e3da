#pragma once

#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelColor.h"
#include "platform/core/COrvelCommonBasicMaterial.h"
#include "platform/core/Export.h"

#include <vector>

namespace Orvel
{

/// Looks of the metallic-roughness model of physically based rendering.
class ORVEL_CORE_API COrvelBasicMetallicMaterial : public COrvelCommonBasicMaterial
{
public:
    /// Colour of a dielectric's diffuse, of a metal's specular reflection; its alpha is the opacity.
    COrvelColor BaseColor() const { return baseColor; }
    void SetBaseColor(const COrvelColor& color) { baseColor = color; }
    COrvelColor EmissiveColor() const { return emissive; }
    void SetEmissiveColor(const COrvelColor& color) { emissive = color; }
    /// 0 dielectric, 1 metal.
    double Metalness() const { return metalness; }
    void SetMetalness(double newMetalness) { metalness = newMetalness; }
    /// 0 mirror, 1 matt.
    double Roughness() const { return roughness; }
    void SetRoughness(double newRoughness) { roughness = newRoughness; }

    COrvelBasicMaterial* Clone() const override;
    COrvelString KindName() const override;
    /// Diffuse is the dielectric share of the base colour, specular the reflection seen head-on, dimmed by roughness;
    /// an alpha below 1 becomes the opacity.
    COrvelBasicGeneralMaterial* ApproximateToGeneralMaterial() override;

protected:
    void ListFields(std::vector<COrvelField>& fields) override;

private:
    COrvelColor baseColor{1.0, 1.0, 1.0, 1.0};
    COrvelColor emissive{0.0, 0.0, 0.0, 1.0};
    double metalness = 0.0;
    double roughness = 1.0;
    COrvelBasicGeneralMaterial approximation;
};

} // namespace Orvel
