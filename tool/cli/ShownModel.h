#pragma once

#include "tool/cli/PRCInput.h"
#include "tool/cli/WorkChannel.h"
#include "tool/import/LoadDocument.h"
#include "tool/render/RenderScene.h"
#include "tool/views/StandardViews.h"

#include <vector>

namespace Orvel::Cli
{

/// What there is to see in a file.
struct ShownModel
{
    Render::RenderScene scene;
    std::vector<Views::View> cameras; ///< of a scene; a PRC model has none
    Views::Orientation orientation;   ///< z up, unless the user wants a scene otherwise
};

/// Reads a scene, or a file that holds a PRC model, for a picture. Warnings go to the reporter.
///
/// A scene takes the way through a PRC file in the temporary folder: the picture shows what an export would hold,
/// materials and textures included, and there is one place that knows how a model is to be drawn.
///
/// @param load of a scene, with its temporary folder.
/// @throws Failure, Import::ImportError, std::exception when the file cannot be read.
[[nodiscard]] ShownModel ReadShownModel(const ModelInput& input, const Import::LoadOptions& load,
                                        const WorkReporter& reporter);

} // namespace Orvel::Cli
