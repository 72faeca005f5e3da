#include "platform/core/COrvelCommonBasicMaterial.h"

#include <utility>

namespace Orvel
{

const COrvelTexture& COrvelCommonBasicMaterial::Texture(enumTextureType type, bool createWhenMissing)
{
    static const COrvelTexture* const empty = new COrvelTexture;
    if (createWhenMissing)
        return textures[type];
    const auto found = textures.find(type);
    return found == textures.end() ? *empty : found->second;
}

void COrvelCommonBasicMaterial::SetTexture(enumTextureType type, COrvelTexture texture)
{
    if (texture.IsEmpty())
        textures.erase(type);
    else
        textures.insert_or_assign(type, std::move(texture));
}

void COrvelCommonBasicMaterial::ListFields(std::vector<COrvelField>& fields)
{
    fields.push_back({"textures", &textures});
}

} // namespace Orvel
