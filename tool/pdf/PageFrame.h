#pragma once

#include "tool/pdf/Rectangle.h"

#include <qpdf/QPDFPageObjectHelper.hh>

namespace Orvel::Pdf
{

/// A page as its readers see it: cut to its crop box and turned as the page says.
///
/// Places on it are rectangles in units of the page (points, unless the page says otherwise) from the lower left corner
/// of what is seen.
class PageFrame
{
public:
    /// Inherited attributes count. A page without a usable box has the size of a letter, as readers take it.
    explicit PageFrame(QPDFPageObjectHelper page);

    [[nodiscard]] double Width() const { return IsSideways() ? box.height : box.width; }
    [[nodiscard]] double Height() const { return IsSideways() ? box.width : box.height; }

    /// @param seen a place on the page.
    /// @return the same place in the coordinates of the page's content.
    [[nodiscard]] Rectangle ToContent(const Rectangle& seen) const;
    [[nodiscard]] Rectangle FromContent(const Rectangle& inContent) const;

    /// The matrix of a form whose upper edge shall be up where the page is seen.
    [[nodiscard]] QPDFObjectHandle UprightMatrix() const;

    /// How far the page is turned clockwise: 0, 90, 180 or 270.
    [[nodiscard]] int RotationInDegrees() const { return rotation; }

private:
    [[nodiscard]] bool IsSideways() const { return rotation % 180 != 0; }

    Rectangle box; ///< of what is seen, in the coordinates of the content
    int rotation = 0;
};

/// The rectangle of an array of two opposite corners; empty for anything else.
[[nodiscard]] Rectangle RectangleOf(QPDFObjectHandle corners);

/// The array of the lower left and the upper right corner.
[[nodiscard]] QPDFObjectHandle CornersOf(const Rectangle& rectangle);

} // namespace Orvel::Pdf
