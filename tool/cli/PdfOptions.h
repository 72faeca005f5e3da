#pragma once

#include "tool/cli/PRCInput.h"
#include "tool/pdf/Artwork.h"
#include "tool/pdf/TemplatePlace.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Orvel::Cli
{

enum class Orientation
{
    AsTheSizeSays,
    Portrait,
    Landscape
};

/// The sheet of a new document. Lengths in points.
struct SheetOptions
{
    double width = 841.89; ///< A4, landscape
    double height = 595.28;
    Orientation orientation = Orientation::AsTheSizeSays;
    double margin = 42.52;            ///< 15 mm
    std::optional<std::string> title; ///< nothing: the name of the scene's file
    std::string author;
    std::string language = "en";
    std::string date;                   ///< as Pdf::DocumentInfo has it; empty: none
    std::optional<std::string> caption; ///< nothing: how to see the model; empty: none
};

inline constexpr double UsualPosterDpi = 150.0;

/// The usual resolution is lower where the picture would have more pixels: posters of some metres are seen from afar.
inline constexpr double MostUsualPosterPixels = 12e6;

/// `orvelprc export` to a PDF
struct PdfOptions
{
    ModelInput model; ///< which model of a PDF; its file is the scene's
    SheetOptions sheet;
    std::optional<Pdf::TemplatePlace> place; ///< nothing: a new document
    std::vector<std::string> views;          ///< by name; empty: the usual ones
    std::string view;                        ///< that is shown first; empty: the first of `views`
    std::array<std::uint8_t, 3> background{255, 255, 255};
    std::string lighting = "CAD";     ///< as PDF spells it
    std::string renderMode = "Solid"; ///< as PDF spells it
    Pdf::Activation activation = Pdf::Activation::Click;
    bool toolbar = true;
    bool modelTree = false;
    bool buttons = false;
    bool startsPlaying = true;       ///< what moves, as soon as the model is live
    std::string description;         ///< for who cannot see the model; empty: made of the title
    std::optional<double> posterDpi; ///< pixels of the picture per inch; nothing: the usual, see MostUsualPosterPixels
};

} // namespace Orvel::Cli
