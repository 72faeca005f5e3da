// player_fixture PDF FOLDER: writes the script that plays the model of a PDF, and the model as a viewer would have it,
// into FOLDER, as script.js and scene.json.

#include "platform/prcfile/PRCModel.h"
#include "platform/prcfile/PRCReader.h"

#include <nlohmann/json.hpp>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>

#include <fstream>
#include <string>

namespace
{

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

/// C2W of the view that is shown first.
json FirstView(QPDFObjectHandle annotation)
{
    json numbers = json::array();
    for (QPDFObjectHandle number : annotation.getKey("/3DV").getKey("/C2W").aitems())
        numbers.push_back(number.getNumericValue());
    return numbers;
}

json SceneOf(const prc::Model::PRCModel& model)
{
    const prc::Model::OccurrenceReference& root = model.roots.front();
    const prc::Model::FileStructure& structure = model.structures[root.structure];
    json scene{{"root", NodeOf(structure, root.occurrence)}, {"materials", json::array()}};
    for (std::uint32_t style = 0; style < structure.globals.styles.size(); ++style)
        scene["materials"].push_back(MaterialOf(structure.globals, style));
    return scene;
}

} // namespace

int main(int, char** arguments)
{
    const std::string folder = arguments[2];
    QPDF pdf;
    pdf.processFile(arguments[1]);
    QPDFObjectHandle annotation =
        QPDFPageDocumentHelper(pdf).getAllPages().at(0).getAnnotations("/3D").at(0).getObjectHandle();
    QPDFObjectHandle stream = annotation.getKey("/3DD");
    const auto model = stream.getStreamData(qpdf_dl_all);
    json scene = SceneOf(prc::readPRC({model->getBuffer(), model->getSize()}));
    scene["view"] = FirstView(annotation);
    std::ofstream(folder + "/scene.json") << scene;
    const auto script = stream.getDict().getKey("/OnInstantiate").getStreamData(qpdf_dl_all);
    std::ofstream(folder + "/script.js") << std::string(reinterpret_cast<char*>(script->getBuffer()),
                                                        script->getSize());
}
