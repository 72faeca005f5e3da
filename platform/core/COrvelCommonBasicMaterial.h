#pragma once

#include "platform/core/COrvelBasicMaterial.h"
#include "platform/core/COrvelTexture.h"
#include "platform/core/Export.h"

#include <vector>

namespace Orvel
{

/// Looks with textures.
class ORVEL_CORE_API COrvelCommonBasicMaterial : public COrvelBasicMaterial
{
public:
    /// The texture of one type.
    ///
    /// @param createWhenMissing true: a missing texture is entered as an empty one.
    /// @return valid until the textures change; an empty texture when there is none.
    const COrvelTexture& Texture(enumTextureType type, bool createWhenMissing);
    /// An empty texture removes what was there.
    void SetTexture(enumTextureType type, COrvelTexture texture);
    /// Takes over copies of another material's textures.
    void SetTextures(const COrvelCommonBasicMaterial& other) { textures = other.textures; }

protected:
    void ListFields(std::vector<COrvelField>& fields) override;

private:
    COrvelTextures textures;
};

} // namespace Orvel
