#include "platform/core/COrvelBasicGeneralMaterial.h"

namespace Orvel
{

COrvelBasicGeneralMaterial::COrvelBasicGeneralMaterial()
    : ambient(0.2, 0.2, 0.2, 1.0)
    , diffuse(0.8, 0.8, 0.8, 1.0)
    , emissive(0.0, 0.0, 0.0, 1.0)
    , specular(0.0, 0.0, 0.0, 1.0)
{}

COrvelBasicGeneralMaterial* COrvelBasicGeneralMaterial::Create()
{
    return new COrvelBasicGeneralMaterial;
}

COrvelBasicMaterial* COrvelBasicGeneralMaterial::Clone() const
{
    return new COrvelBasicGeneralMaterial(*this);
}

COrvelString COrvelBasicGeneralMaterial::KindName() const
{
    return "COrvelBasicGeneralMaterial";
}

COrvelBasicGeneralMaterial* COrvelBasicGeneralMaterial::ApproximateToGeneralMaterial()
{
    return this;
}

void COrvelBasicGeneralMaterial::ListFields(std::vector<COrvelField>& fields)
{
    COrvelCommonBasicMaterial::ListFields(fields);
    fields.push_back({"ambient", &ambient});
    fields.push_back({"diffuse", &diffuse});
    fields.push_back({"emissive", &emissive});
    fields.push_back({"specular", &specular});
    fields.push_back({"opacity", &opacity});
}

} // namespace Orvel
