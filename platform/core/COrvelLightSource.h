#pragma once

#include "platform/core/COrvelSceneNode.h"
#include "platform/core/COrvelUsers.h"
#include "platform/core/Export.h"

namespace Orvel
{

class COrvelLight;

/// A place in the scene that a light shines from.
class ORVEL_CORE_API COrvelLightSource : public COrvelSceneNode
{
public:
    static COrvelLightSource* Create(COrvelDocument* document, COrvelString name = {}, COrvelLight* light = nullptr);

    /// Null when there is none.
    COrvelLight* Light() const { return light.Get(); }
    /// @param newLight not owned, may serve several sources; null for none.
    void SetLight(COrvelLight* newLight);

protected:
    COrvelLightSource(COrvelDocument* document, COrvelString name);

private:
    COrvelUse<COrvelLightSource, COrvelLight> light;
};

} // namespace Orvel
