#pragma once

#include "animation/COrvelKeyFrameData.h"
#include "platform/core/COrvelPtr.h"

namespace Orvel
{

/// Writes the type of a data and its record.
bool WriteTypedKeyFrameData(COrvelArchiveBase& archive, COrvelKeyFrameData& data);

/// Reads a type, makes a data of it and reads its record.
///
/// @param entity the data is made for; the record names the entities once more.
/// @return null when the type is unknown or something could not be read.
COrvelPtr<COrvelKeyFrameData> ReadTypedKeyFrameData(COrvelArchiveBase& archive, const COrvelID& entity);

} // namespace Orvel
