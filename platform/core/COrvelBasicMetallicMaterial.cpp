#include "platform/core/COrvelBasicMetallicMaterial.h"

namespace Orvel
{

namespace
{

/// Share of light that a dielectric mirrors when seen head-on.
constexpr double dielectricReflection = 0.04;
/// Ambient light is taken up by diffuse reflection, at the strength that general materials are made with.
constexpr double ambientShare = 0.25;

COrvelColor Scaled(const COrvelColor& color, double factor)
{
    return COrvelColor(factor * color.R(), factor * color.G(), factor * color.B(), 1.0);
}

} // namespace

COrvelBasicMaterial* COrvelBasicMetallicMaterial::Clone() const
{
    return new COrvelBasicMetallicMaterial(*this);
}

COrvelString COrvelBasicMetallicMaterial::KindName() const
{
    return "COrvelBasicMetallicMaterial";
}

COrvelBasicGeneralMaterial* COrvelBasicMetallicMaterial::ApproximateToGeneralMaterial()
{
    const auto specular = [this](double channel) {
        const double headOn = (1.0 - metalness) * dielectricReflection + metalness * channel;
        return headOn * (1.0 - roughness);
    };
    const COrvelColor diffuse = Scaled(baseColor, 1.0 - metalness);
    approximation.SetName(Name());
    approximation.SetTextures(*this);
    approximation.SetAmbientColor(Scaled(diffuse, ambientShare));
    approximation.SetDiffuseColor(diffuse);
    approximation.SetEmissiveColor(emissive);
    approximation.SetSpecularColor(
        COrvelColor(specular(baseColor.R()), specular(baseColor.G()), specular(baseColor.B()), 1.0));
    approximation.RemoveOpacity();
    if (baseColor.A() < 1.0)
        approximation.SetOpacity(baseColor.A());
    return &approximation;
}

void COrvelBasicMetallicMaterial::ListFields(std::vector<COrvelField>& fields)
{
    COrvelCommonBasicMaterial::ListFields(fields);
    fields.push_back({"baseColor", &baseColor});
    fields.push_back({"emissive", &emissive});
    fields.push_back({"metalness", &metalness});
    fields.push_back({"roughness", &roughness});
}

} // namespace Orvel
