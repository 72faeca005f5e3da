#include "mapping/COrvelPRCMapper.h"
#include "platform/core/COrvelBasicSceneState.h"
#include "platform/prcfile/oPRCFile.h"
#include "prc/COrvelPRCHandler.h"
#include "prc/MaterialConversion.h"

namespace Orvel
{

namespace
{

uint32 AddReplacement(const COrvelPRCHandler& converter, COrvelBasicMaterial* replacement, prc::oPRCFile& file)
{
    MaterialRecord material;
    MakeReplacementMaterial(converter, material, replacement);
    return file.addMaterial(material.record);
}

} // namespace

void COrvelPRCHandler::ExtractSceneStateMaterials(prc::oPRCFile& file, std::vector<COrvelBasicSceneState>* sceneStates)
{
    if (!sceneStates)
        return;
    int ordinal = 0;
    for (const COrvelBasicSceneState& state : *sceneStates) {
        std::map<int, int> replacements;
        for (const auto& [material, replacement] : state.materialReplacements) {
            // A material that no mesh shows is entered with number 0, which later passes then find.
            const uint32 number = materialNumbers->try_emplace(material, 0).first->second;
            const uint32 index = AddReplacement(*this, replacement, file);
            replacements[static_cast<int>(number)] = static_cast<int>(index + 1);
        }
        mapper->AddMapping(ordinal++, replacements);
    }
}

} // namespace Orvel
