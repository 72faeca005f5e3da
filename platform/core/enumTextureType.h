#pragma once

namespace Orvel
{

/// What a texture of a material changes. Exports show the first one.
enum enumTextureType : int
{
    textureTypeDiffuse = 1,
    textureTypeBump = 2,
    textureTypeOpacity = 3,
    textureTypeReflection = 4
};

} // namespace Orvel
