#include "tests/tool/SceneBuilder.h"
#include "tool/animation/AnimatedScene.h"
#include "tool/import/DocumentBuilder.h"
#include "tool/script/ApplyScript.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

/// Reads scene scripts that the fuzzer makes up and applies them to a small scene. Whatever is wrong with one is told
/// by ImportError.
namespace
{

using namespace Orvel;

/// A triangle in the material "paint" at "arm/hand" and an empty "hand" beside it.
Import::ImportedScene SmallScene()
{
    Test::SceneBuilder builder;
    Import::ImportedPart part;
    part.geometry = builder.Triangle(5.0);
    part.material = builder.Material("paint");
    const Import::Index arm = builder.Node("arm");
    builder.Node("hand", arm, {part});
    builder.Node("hand");
    return std::move(builder.scene);
}

void Use(COrvelKeyFrameManager& timeline)
{
    std::vector<COrvelID> ids;
    timeline.ListAnimatedIDs(ids);
    for (const COrvelID& id : ids)
        for (int frame = 0; frame <= timeline.LastFrame(); ++frame)
            timeline.KeyFrameDataAtFrame(id, frame);
}

void ApplyToSmallScene(const Script::SceneScript& script)
{
    Import::ImportReport report;
    Import::TextureFiles noTextures({}, {}, {}, report);
    Import::BuiltDocument built = Import::BuildDocument(SmallScene(), noTextures, {});
    Animate::AnimationOptions options;
    options.mostFrames = 50;
    Animate::AnimatedScene animated = Animate::MakeAnimatedScene(built, options, report);
    const Script::ScriptLooks looks = Script::ApplyScript(script, options, built, animated);
    if (animated.manager->LastFrame() >= options.mostFrames)
        std::abort();
    Use(*animated.manager);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    try {
        ApplyToSmallScene(Script::ParseScript(std::string_view(reinterpret_cast<const char*>(data), size)));
    } catch (const Import::ImportError&) {
        return 0;
    }
    return 0;
}
