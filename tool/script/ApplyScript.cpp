#include "tool/script/ApplyScript.h"

#include "animation/COrvelKeyFrameDataMaterial.h"
#include "animation/COrvelKeyFrameManager.h"
#include "animation/COrvelSequence.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelMaterial.h"
#include "tool/animation/SceneExtent.h"
#include "tool/script/ScriptedCamera.h"
#include "tool/script/ScriptedNodes.h"

#include <algorithm>
#include <utility>

namespace Orvel::Script
{

namespace
{

/// A name may stand for several materials: shapes that are shared have materials of their own.
std::vector<COrvelMaterial*> MaterialsNamed(const std::string& name, const COrvelDocument& document)
{
    std::vector<COrvelMaterial*> materials;
    document.ListMaterials(materials);
    std::erase_if(materials, [&](COrvelMaterial* material) { return material->Name().toStdString() != name; });
    if (materials.empty())
        throw Import::ImportError("the scene script names the material " + Import::Quoted(name) +
                                  ", which does not exist");
    return materials;
}

std::unique_ptr<COrvelBasicGeneralMaterial> Changed(const COrvelMaterial& material, const LookChange& change)
{
    auto look = std::make_unique<COrvelBasicGeneralMaterial>(*material.ApproximateToOrvelGeneralMaterial());
    if (change.ambient)
        look->SetAmbientColor(*change.ambient);
    if (change.diffuse)
        look->SetDiffuseColor(*change.diffuse);
    if (change.specular)
        look->SetSpecularColor(*change.specular);
    if (change.emissive)
        look->SetEmissiveColor(*change.emissive);
    if (change.opacity)
        look->SetOpacity(*change.opacity);
    return look;
}

void AddStates(const SceneScript& script, const COrvelDocument& document, Animate::AnimatedScene& animated,
               ScriptLooks& looks)
{
    for (const StateOfMaterials& state : script.states) {
        COrvelBasicSceneState added;
        for (const auto& [name, change] : state.materials) {
            for (COrvelMaterial* material : MaterialsNamed(name, document)) {
                looks.push_back(Changed(*material, change));
                added.materialReplacements[material] = looks.back().get();
            }
        }
        animated.sceneStates.push_back(std::move(added));
        animated.sceneStateNames.push_back(state.name);
    }
}

void AddMaterialKeys(const SceneScript& script, const COrvelDocument& document, COrvelKeyFrameManager& timeline)
{
    for (const ChangingMaterial& changing : script.materials) {
        for (COrvelMaterial* material : MaterialsNamed(changing.material, document)) {
            for (const MaterialKey& key : changing.keys) {
                const auto look = Changed(*material, key.look);
                COrvelPtr<COrvelKeyFrameData> data(
                    COrvelKeyFrameDataMaterial::CreateMaterialKeyFrameData(material->ID(), look.get(), material->ID()));
                data->SetFrame(key.frame);
                timeline.AddKeyFrameData(data, true);
            }
        }
    }
}

/// A sequence of the timeline's states, one data for each frame: what a range cuts off changes nothing in them.
COrvelPtr<COrvelSequence> CopyRange(const NamedRange& range, int orderIndex, COrvelKeyFrameManager& timeline)
{
    COrvelPtr<COrvelSequence> sequence(COrvelSequence::Create());
    sequence->SetName(COrvelString(range.name.c_str()));
    sequence->SetOrderIndex(orderIndex);
    std::vector<COrvelID> ids;
    timeline.ListAnimatedIDs(ids);
    for (const COrvelID& id : ids) {
        for (int frame = range.from; frame <= range.to; ++frame) {
            const auto state = timeline.KeyFrameDataAtFrame(id, frame);
            if (!state)
                continue;
            COrvelPtr<COrvelKeyFrameData> data(state->Clone(true));
            data->SetFrame(frame - range.from);
            data->SetSequenceNumber(0);
            sequence->AddKeyFrameData(data, true);
        }
    }
    return sequence;
}

void CheckFrame(long long frame, const Animate::AnimationOptions& options)
{
    if (frame >= options.mostFrames)
        throw Import::ImportError("the scene script goes to frame " + std::to_string(frame) + ", and the limit is " +
                                  std::to_string(options.mostFrames) + " frames");
}

void CheckFrames(const SceneScript& script, const Animate::AnimationOptions& options)
{
    for (const ChangingMaterial& material : script.materials)
        for (const MaterialKey& key : material.keys)
            CheckFrame(key.frame, options);
    for (const TurningNode& turn : script.turning)
        CheckFrame(turn.to, options);
    for (const NamedRange& range : script.sequences)
        CheckFrame(range.to, options);
    if (script.camera)
        for (const CameraMove& move : script.camera->moves)
            CheckFrame(LastFrameOf(move), options);
}

} // namespace

ScriptLooks ApplyScript(const SceneScript& script, const Animate::AnimationOptions& options,
                        Import::BuiltDocument& built, Animate::AnimatedScene& animated)
{
    CheckFrames(script, options);
    COrvelDocument& document = *built.document;
    COrvelKeyFrameManager& timeline = *animated.manager;
    const NodeLookUp nodes(document);
    const Animate::SceneExtent extent = Animate::MeasureScene(document);
    ScriptLooks looks;
    AddStates(script, document, animated, looks);
    AddMaterialKeys(script, document, timeline);
    ApplyVisibility(script.visibility, nodes);
    AddTurns(script.turning, nodes, timeline);
    if (script.camera)
        animated.camera = AddCamera(*script.camera, extent, document, timeline);
    for (const NamedRange& range : script.sequences)
        animated.sequences.push_back(CopyRange(range, static_cast<int>(animated.sequences.size()) + 1, timeline));
    return looks;
}

} // namespace Orvel::Script
