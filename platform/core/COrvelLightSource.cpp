#include "platform/core/COrvelLightSource.h"

#include "platform/core/COrvelLight.h"

#include <utility>

namespace Orvel
{

COrvelLightSource::COrvelLightSource(COrvelDocument* document, COrvelString name)
    : COrvelSceneNode(document, eEntityType_LightSource, std::move(name))
    , light(*this)
{}

COrvelLightSource* COrvelLightSource::Create(COrvelDocument* document, COrvelString name, COrvelLight* light)
{
    COrvelLightSource* const source = new COrvelLightSource(document, std::move(name));
    source->SetLight(light);
    return source;
}

void COrvelLightSource::SetLight(COrvelLight* newLight)
{
    if (newLight)
        light.Set(newLight->sourcesUsingThis);
    else
        light.Reset();
}

} // namespace Orvel
