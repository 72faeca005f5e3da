#pragma once

#include "tool/cli/PRCInput.h"
#include "tool/cli/WorkChannel.h"
#include "tool/import/LoadDocument.h"
#include "tool/render/RenderScene.h"
#include "tool/views/StandardViews.h"

#include <filesystem>
#include <string>
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

/// Reads a PRC file that this program has written: without the limits that keep files from elsewhere small.
[[nodiscard]] prc::Model::PRCModel ReadBack(const std::filesystem::path& file);

/// What a picture shows of a model, which is freed. Warnings go to the reporter.
///
/// @throws Failure when there are any and `strict` says that there must be none.
[[nodiscard]] Render::RenderScene MakeRenderScene(prc::Model::PRCModel model, const WorkReporter& reporter,
                                                  bool strict = false);

/// Which way is up in the file that a scene is exported to, or in a file that does not say: z, unless `wanted`.
[[nodiscard]] Views::Orientation OrientationOf(const Import::BuildSummary& built, Import::Up wanted);

/// The camera with this name, else the standard view.
///
/// @param aspect width of the picture divided by its height.
/// @throws Failure when there is none; it names those that there are.
[[nodiscard]] Views::View ViewNamed(const std::string& name, double aspect, const ShownModel& shown);

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
