#pragma once

#include "tool/import/DocumentBuilder.h"
#include "tool/views/StandardViews.h"

#include <vector>

namespace Orvel::Views
{

/// The views of a scene's cameras, in their order, each with the camera's name. A camera that does not say what it
/// looks at turns around the point of its line of sight that is as far away as the middle of the shape.
///
/// @param cameras whose document still exists.
[[nodiscard]] std::vector<View> CameraViews(const std::vector<Import::DocumentCamera>& cameras, const Support& shape);

} // namespace Orvel::Views
