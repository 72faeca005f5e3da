#pragma once

#include "tool/views/View.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace Orvel::Pdf
{

/// When a page's picture of a model becomes the live model.
enum class Activation
{
    Click,
    PageVisible,
    PageOpen
};

/// A PRC model and how a page shows it.
struct Artwork
{
    std::span<const std::uint8_t> prc; ///< the file's bytes; not owned, needed until the sheet is written
    std::vector<Views::View> views;    ///< at least one; their names differ. Coordinates of the file
    std::size_t defaultView = 0;       ///< position in `views`
    std::array<std::uint8_t, 3> background{255, 255, 255}; ///< sRGB
    std::string lighting = "CAD";                          ///< name of a lighting scheme as PDF spells it
    std::string renderMode = "Solid";                      ///< name of a render mode as PDF spells it
    Activation activation = Activation::Click;
    bool toolbar = true;    ///< the reader shows its 3D toolbar
    bool modelTree = false; ///< the reader shows the tree of the model
    double unitInMillimetres = 1.0;
    std::string description; ///< for who cannot see the model; UTF-8
    std::string script;      ///< ASCII JavaScript that runs when the model becomes live; empty: none
    bool plays = false;      ///< the script moves something, by its functions play3D() and pause3D()
};

/// The picture that stands in the place of a model that is not live.
struct Poster
{
    std::uint32_t width = 0; ///< pixels
    std::uint32_t height = 0;
    std::vector<std::uint8_t> deflatedRows; ///< RGB of 8 bits, top row first, as in the data of a PNG file
};

/// @param png the bytes of a PNG file: RGB of 8 bits, not interlaced.
[[nodiscard]] Poster PosterFromPng(std::span<const std::uint8_t> png);

} // namespace Orvel::Pdf
