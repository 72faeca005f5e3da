#pragma once

namespace Orvel::Pdf
{

/// A place in points: the lower left corner and the size.
struct Rectangle
{
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;
};

} // namespace Orvel::Pdf
