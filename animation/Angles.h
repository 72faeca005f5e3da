#pragma once

namespace Orvel
{

constexpr double Pi = 3.141592653589793;

constexpr double Radians(double degrees)
{
    return degrees / 180.0 * Pi;
}

} // namespace Orvel
