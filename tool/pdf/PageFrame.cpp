#include "tool/pdf/PageFrame.h"

#include "tool/pdf/PdfValues.h"

#include <algorithm>

namespace Orvel::Pdf
{

namespace
{

constexpr Rectangle Letter{0.0, 0.0, 612.0, 792.0};

Rectangle Intersection(const Rectangle& a, const Rectangle& b)
{
    const double x = std::max(a.x, b.x);
    const double y = std::max(a.y, b.y);
    return {x, y, std::min(a.x + a.width, b.x + b.width) - x, std::min(a.y + a.height, b.y + b.height) - y};
}

bool IsUsable(const Rectangle& rectangle)
{
    return rectangle.width > 0.0 && rectangle.height > 0.0;
}

Rectangle SeenBox(QPDFPageObjectHelper& page)
{
    Rectangle media = RectangleOf(page.getMediaBox());
    if (!IsUsable(media))
        media = Letter;
    const Rectangle seen = Intersection(media, RectangleOf(page.getCropBox()));
    return IsUsable(seen) ? seen : media;
}

int RotationOf(QPDFPageObjectHelper& page)
{
    QPDFObjectHandle rotate = page.getAttribute("/Rotate", false);
    const int quarters = rotate.isInteger() ? rotate.getIntValueAsInt() / 90 : 0;
    return 90 * ((quarters % 4 + 4) % 4);
}

} // namespace

PageFrame::PageFrame(QPDFPageObjectHelper page)
    : box(SeenBox(page))
    , rotation(RotationOf(page))
{}

Rectangle PageFrame::ToContent(const Rectangle& seen) const
{
    switch (rotation) {
    case 90:
        return {box.x + box.width - seen.y - seen.height, box.y + seen.x, seen.height, seen.width};
    case 180:
        return {box.x + box.width - seen.x - seen.width, box.y + box.height - seen.y - seen.height, seen.width,
                seen.height};
    case 270:
        return {box.x + seen.y, box.y + box.height - seen.x - seen.width, seen.height, seen.width};
    default:
        return {box.x + seen.x, box.y + seen.y, seen.width, seen.height};
    }
}

Rectangle PageFrame::FromContent(const Rectangle& inContent) const
{
    const double x = inContent.x - box.x;
    const double y = inContent.y - box.y;
    switch (rotation) {
    case 90:
        return {y, box.width - x - inContent.width, inContent.height, inContent.width};
    case 180:
        return {box.width - x - inContent.width, box.height - y - inContent.height, inContent.width, inContent.height};
    case 270:
        return {box.height - y - inContent.height, x, inContent.height, inContent.width};
    default:
        return {x, y, inContent.width, inContent.height};
    }
}

QPDFObjectHandle PageFrame::UprightMatrix() const
{
    switch (rotation) {
    case 90:
        return Numbers({0, 1, -1, 0, 0, 0});
    case 180:
        return Numbers({-1, 0, 0, -1, 0, 0});
    case 270:
        return Numbers({0, -1, 1, 0, 0, 0});
    default:
        return Numbers({1, 0, 0, 1, 0, 0});
    }
}

Rectangle RectangleOf(QPDFObjectHandle corners)
{
    if (!corners.isRectangle())
        return {};
    const QPDFObjectHandle::Rectangle box = corners.getArrayAsRectangle();
    return {box.llx, box.lly, box.urx - box.llx, box.ury - box.lly};
}

QPDFObjectHandle CornersOf(const Rectangle& rectangle)
{
    return Numbers({rectangle.x, rectangle.y, rectangle.x + rectangle.width, rectangle.y + rectangle.height});
}

} // namespace Orvel::Pdf
