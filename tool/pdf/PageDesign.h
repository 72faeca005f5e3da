#pragma once

#include "tool/pdf/Rectangle.h"

#include <string>
#include <vector>

namespace Orvel::Pdf
{

/// Points between a model and what stands below it, when there is a row of buttons.
inline constexpr double ButtonRowHeight = 28.0;

/// A page of its own for a model: a line with title and author, the model in a frame, a caption below it. Lengths are
/// in points, texts in UTF-8.
struct PageDesign
{
    double width = 841.89; ///< of the page
    double height = 595.28;
    double margin = 42.52;   ///< that stays free at each edge
    std::string title;       ///< empty: none
    std::string author;      ///< empty: none
    std::string caption;     ///< empty: none
    bool hasButtons = false; ///< a row stays free for them between model and caption
};

/// The page that a design gives.
struct PageLayout
{
    std::string content; ///< with fonts as ShowText names them
    Rectangle model;
    Rectangle buttons;                ///< their row, empty when there are none
    std::vector<std::string> unshown; ///< texts that the standard fonts cannot show, which were left out
};

/// @throws PdfError when no room is left for the model.
[[nodiscard]] PageLayout LayOut(const PageDesign& design);

} // namespace Orvel::Pdf
