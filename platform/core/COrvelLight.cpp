#include "platform/core/COrvelLight.h"

#include "platform/core/COrvelBasicLight.h"
#include "platform/core/COrvelLightSource.h"

#include <algorithm>
#include <utility>

namespace Orvel
{

COrvelLight::COrvelLight(COrvelDocument* document, std::unique_ptr<COrvelBasicLight> values)
    : COrvelEntity(document, eEntityType_Light)
    , basicLight(std::move(values))
    , sourcesUsingThis(*this)
{
    SetName(std::as_const(*basicLight).Name());
}

COrvelLight::~COrvelLight() = default;

COrvelLight* COrvelLight::Create(COrvelDocument* document, COrvelString name)
{
    COrvelBasicPointLight values;
    values.SetName(std::move(name));
    return Create(document, values);
}

COrvelLight* COrvelLight::Create(COrvelDocument* document, const COrvelBasicLight& values)
{
    return new COrvelLight(document, std::unique_ptr<COrvelBasicLight>(values.Clone()));
}

void COrvelLight::LoadBasicLight(const COrvelBasicLight* values, bool takeName)
{
    if (!values)
        return;
    basicLight.reset(values->Clone());
    if (takeName)
        SetName(std::as_const(*basicLight).Name());
}

void COrvelLight::GetLightSourcesReferencingThisLight(std::vector<COrvelSceneNode*>& sources) const
{
    sources.assign(sourcesUsingThis.begin(), sourcesUsingThis.end());
}

int COrvelLight::NumberOfUndeletedLightSourcesReferencingThisLight() const
{
    return static_cast<int>(std::count_if(sourcesUsingThis.begin(), sourcesUsingThis.end(),
                                          [](const COrvelLightSource* source) { return !source->IsDeleted(); }));
}

} // namespace Orvel
