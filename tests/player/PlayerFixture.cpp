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

/// C2W of each view, by name, and of the one that is shown first under "".
json ViewsOf(QPDFObjectHandle annotation)
{
    json views;
    const auto add = [&views](const std::string& name, QPDFObjectHandle view) {
        for (QPDFObjectHandle number : view.getKey("/C2W").aitems())
            views[name].push_back(number.getNumericValue());
    };
    add("", annotation.getKey("/3DV"));
    for (QPDFObjectHandle view : annotation.getKey("/3DD").getDict().getKey("/VA").aitems())
        add(view.getKey("/XN").getUTF8Value(), view);
    return views;
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
    scene["views"] = ViewsOf(annotation);
    std::ofstream(folder + "/scene.json") << scene;
    const auto script = stream.getDict().getKey("/OnInstantiate").getStreamData(qpdf_dl_all);
    std::ofstream(folder + "/script.js") << std::string(reinterpret_cast<char*>(script->getBuffer()),
                                                        script->getSize());
}
