#pragma once

#include "tool/import/ImportedAnimation.h"

namespace Orvel::Import
{

/// @throws ImportError when a time lies before the one before it, or a number is not finite.
void CheckTrack(const ImportedTrack& track);

/// Brings the values of a track of rotations to unit length; tangents stay.
void MakeRotationsUnit(ImportedTrack& track);

} // namespace Orvel::Import
