#pragma once

#include "platform/core/COrvelEntity.h"
#include "platform/core/COrvelUsers.h"
#include "platform/core/Export.h"

#include <memory>
#include <vector>

namespace Orvel
{

class COrvelBasicLight;
class COrvelLightSource;
class COrvelSceneNode;

/// A light of a document, shared by the light sources that shine with it; its values are a COrvelBasicLight.
class ORVEL_CORE_API COrvelLight : public COrvelEntity
{
public:
    /// A light with the values of a new point light.
    static COrvelLight* Create(COrvelDocument* document, COrvelString name = {});
    /// A light with a copy of these values and their name.
    static COrvelLight* Create(COrvelDocument* document, const COrvelBasicLight& values);
    ~COrvelLight() override;

    /// The values themselves; never null, replaced by LoadBasicLight.
    COrvelBasicLight* BasicLight() const { return basicLight.get(); }
    /// Takes over a copy of `values`; null changes nothing.
    ///
    /// @param takeName true: the light takes the name of the values as well.
    void LoadBasicLight(const COrvelBasicLight* values, bool takeName);

    /// Replaces `sources` with the light sources that shine with this light, deleted and hidden ones included, each
    /// once, in the order in which they took it.
    void GetLightSourcesReferencingThisLight(std::vector<COrvelSceneNode*>& sources) const;
    int NumberOfUndeletedLightSourcesReferencingThisLight() const;

protected:
    COrvelLight(COrvelDocument* document, std::unique_ptr<COrvelBasicLight> values);

private:
    friend class COrvelLightSource;

    std::unique_ptr<COrvelBasicLight> basicLight;
    COrvelUsers<COrvelLightSource, COrvelLight> sourcesUsingThis;
};

} // namespace Orvel
