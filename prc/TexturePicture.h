#pragma once

#include "platform/core/COrvelString.h"
#include "platform/core/Types.h"

#include <cstdint>
#include <memory>

namespace Orvel
{

class COrvelPRCHandler;

/// The picture of a texture as the PRC file takes it: rows follow each other without gaps, the bottom row first, each
/// pixel R, G, B or R, G, B, A.
struct TexturePicture
{
    std::shared_ptr<const std::uint8_t[]> pixels; ///< width * height * BytesPerPixel()
    uint32 width = 0;
    uint32 height = 0;
    uint32 format = 2; ///< 2: RGB bytes, 3: RGBA bytes

    [[nodiscard]] uint32 BytesPerPixel() const { return format == 3 ? 4 : 3; }
};

/// Loads a texture file: recognised by its content, else by its name; with alpha when the picture has transparency;
/// scaled down bilinearly until no side is larger than the converter's maximumTextureSize.
///
/// A file that was loaded just before and has not changed since is answered from a small cache.
///
/// @param picture out: written only when a picture was produced. A picture that cannot be scaled becomes 0 x 0.
/// @return true always; an unreadable file is no error.
bool LoadTexturePicture(const COrvelPRCHandler& converter, const COrvelString& fileName, TexturePicture& picture);

} // namespace Orvel
