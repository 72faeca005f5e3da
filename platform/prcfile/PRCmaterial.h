#pragma once

#include <cstdint>

namespace prc
{

/// A colour with its own opacity. All four components lie in 0..1 in a file and are clamped to it on the way there.
struct PRCcolor
{
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    double alpha = 1.0; ///< 0 is invisible, 1 opaque.
};

/// How the bytes of a picture are to be read. The numbers are those of the file format.
enum class PRCpictureFormat : std::uint32_t
{
    Rgb = 2, ///< three bytes a pixel: red, green, blue.
    Rgba = 3 ///< four bytes a pixel: red, green, blue, alpha.
};

/// A material as it is handed to oPRCFile::addMaterial: colours, opacity, and the picture of its texture.
///
/// The order of the fields is a promise to callers, who may initialise the record positionally.
struct PRCmaterial
{
    PRCcolor ambient;
    PRCcolor diffuse;
    PRCcolor emissive;
    PRCcolor specular;
    double alpha = 1.0;     ///< opacity of whatever is drawn in the material; clamped to 0..1 when it is written.
    double shininess = 1.0; ///< 0..1, the classic exponent divided by 128; clamped likewise.

    /// The pixels, not owned: oPRCFile::addMaterial copies them before it returns. Null without a picture. Rows follow
    /// each other without padding and begin with the bottom row of the picture; pixels run from left to right.
    const std::uint8_t* pictureData = nullptr;
    PRCpictureFormat pictureFormat = PRCpictureFormat::Rgb;
    std::uint32_t pictureWidth = 0;  ///< in pixels.
    std::uint32_t pictureHeight = 0; ///< in pixels.
    std::uint32_t pictureSize = 0;   ///< in bytes: width x height x 3 or x 4.
    bool pictureReplace = false;     ///< the picture replaces the lit colours instead of being multiplied with them.
    bool pictureRepeat = false;      ///< the picture repeats beyond 0..1; otherwise it ends at its border.
};

} // namespace prc
