#pragma once

#include "platform/prcfile/PRCModel.h"
#include "platform/prcfile/PRCScene.h"
#include "tool/render/RenderScene.h"

#include <string>
#include <vector>

namespace Orvel::Render
{

/// A scene and what could not be taken over, a line for people each.
struct BuiltRenderScene
{
    RenderScene scene;
    std::vector<std::string> notes;
};

/// Makes what a picture of a PRC model shows: the triangles of everything that is not hidden, with their styles and
/// textures. Every shape is kept once however often it is placed. Shapes without normals get them as the file asks for:
/// smooth up to its crease angle.
///
/// Triangles with a coordinate that is no finite number, and places that flatten a shape, are left out.
///
/// @param placed what placeScene made of `model`.
/// @throws std::bad_alloc
[[nodiscard]] BuiltRenderScene BuildRenderScene(const prc::Model::PRCModel& model,
                                                const prc::Model::PlacedScene& placed);

} // namespace Orvel::Render
