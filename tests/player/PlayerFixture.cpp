// player_fixture SCENE FOLDER SCRIPT FPS: exports a scene with what a scene script adds, and writes the player's script
// and the scene as a viewer would have it into FOLDER, as script.js and scene.json.

#include "mapping/COrvelPRCMapper.h"
#include "platform/prcfile/PRCModel.h"
#include "platform/prcfile/PRCReader.h"
#include "tool/import/DistinctNames.h"
#include "tool/import/LoadDocument.h"
#include "tool/player/PlayerScript.h"
#include "tool/script/ApplyScript.h"
#include "writer/COrvelPRCWriter.h"

#include <nlohmann/json.hpp>

#include <fstream>
#include <string>

namespace
{

using namespace Orvel;
using nlohmann::json;

json NodeOf(const prc::Model::FileStructure& structure, std::uint32_t occurrence)
{
    const prc::Model::ProductOccurrence& group = structure.occurrences[occurrence];
    json node{{"name", group.name.value_or("")}, {"meshes", json::array()}, {"children", json::array()}};
    if (group.location)
        node["matrix"] = *group.location;
    if (group.part != prc::nullIndex)
        for (const auto& item : structure.parts[group.part].items)
            node["meshes"].push_back(structure.tessellations[item.tessellation].faces.front().styles.front());
    for (const std::uint32_t child : group.children)
        node["children"].push_back(NodeOf(structure, child));
    return node;
}

json MaterialOf(const prc::Model::Globals& globals, std::uint32_t style)
{
    const prc::Model::Appearance appearance = appearanceOf(globals, style);
    const prc::Model::Material& material = *appearance.material;
    return {{"opacity", appearance.alpha},
            {"ambientColor", globals.colours[material.ambient]},
            {"diffuseColor", globals.colours[material.diffuse]},
            {"emissiveColor", globals.colours[material.emissive]},
            {"specularColor", globals.colours[material.specular]}};
}

void WriteSceneJson(const prc::Model::PRCModel& model, const std::string& file)
{
    const prc::Model::OccurrenceReference& root = model.roots.front();
    const prc::Model::FileStructure& structure = model.structures[root.structure];
    json scene{{"root", NodeOf(structure, root.occurrence)}, {"materials", json::array()}};
    for (std::uint32_t style = 0; style < structure.globals.styles.size(); ++style)
        scene["materials"].push_back(MaterialOf(structure.globals, style));
    std::ofstream(file) << scene;
}

Record::RunFacts FactsOf(const Animate::AnimatedScene& animated)
{
    Record::RunFacts facts;
    facts.sceneStates = animated.sceneStateNames;
    facts.framesPerSecond = animated.framesPerSecond;
    facts.lastFrame = animated.manager->LastFrame();
    return facts;
}

} // namespace

int main(int, char** arguments)
{
    const std::string folder = arguments[2];
    Import::ImportReport report;
    Import::LoadOptions load;
    load.temporaryFolder = folder;
    auto loaded = Import::LoadDocument(arguments[1], load, report);
    Animate::AnimationOptions options;
    options.framesPerSecond = std::stod(arguments[4]);
    auto animated = Animate::MakeAnimatedScene(loaded, options, report);
    const auto looks = Script::ApplyScript(Script::ReadScript(arguments[3]), options, loaded, animated);
    Import::GiveDistinctNodeNames(*loaded.document);
    const Record::RunFacts facts = FactsOf(animated);

    COrvelPRCWriter writer;
    COrvelKeyFrameManager& timeline = *animated.manager;
    writer.SetKeyFrameManager(animated.manager.release());
    COrvelPRCMapper mapper;
    writer.SetPRCMapper(&mapper);
    const std::string file = folder + "/scene.prc";
    if (!writer.ExportToMemory(loaded.document.get(), COrvelString(file.c_str()), nullptr, nullptr,
                               &animated.sceneStates))
        return 1;
    const prc::Model::PRCModel model = prc::readPRCFile(file);
    WriteSceneJson(model, folder + "/scene.json");
    std::vector<COrvelSequence*> sequences;
    for (const auto& sequence : animated.sequences)
        sequences.push_back(sequence.Get());
    std::ofstream(folder + "/script.js")
        << Player::MakePlayerScript({*loaded.document, mapper, facts, model, timeline, sequences}).text;
}
