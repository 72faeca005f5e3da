#include "tool/cli/InspectReport.h"

#include "platform/prcfile/PRCPicture.h"

#include <nlohmann/json.hpp>

#include <cstdio>

namespace Orvel::Cli
{

namespace
{

using namespace prc::Model;
using Json = nlohmann::ordered_json;

Json IndexOrNull(std::uint32_t index)
{
    return index == prc::nullIndex ? Json(nullptr) : Json(index);
}

Json NameOrNull(const Name& name)
{
    return name ? Json(*name) : Json(nullptr);
}

std::string HexOf(const prc::UniqueId& id)
{
    std::string text;
    for (const std::uint32_t number : id) {
        char digits[9];
        std::snprintf(digits, sizeof digits, "%08x", number);
        text += digits;
    }
    return text;
}

Json SectionJson(const std::string& name, const Json& structure, const SectionSummary& section)
{
    return {{"name", name},
            {"structure", structure},
            {"state", StateName(section.state)},
            {"offset", section.offset},
            {"storedBytes", section.storedBytes},
            {"unpackedBytes", section.unpackedBytes}};
}

Json SectionsJson(const PRCModel& model)
{
    Json list = Json::array();
    list.push_back(SectionJson("main header", nullptr, {SectionState::Read, 0, model.headerBytes, model.headerBytes}));
    for (std::size_t structure = 0; structure < model.structures.size(); ++structure) {
        for (std::size_t section = 0; section < prc::sectionCount; ++section)
            list.push_back(SectionJson(SectionName(section), structure, model.structures[structure].sections[section]));
    }
    list.push_back(SectionJson("model file", nullptr, model.modelFile));
    return list;
}

Json ItemJson(const InspectedModel& inspected, const PlacedItem& item)
{
    const RepresentationItem& stored = inspected.model.structures[item.structure].parts[item.part].items[item.item];
    return {{"type", static_cast<std::uint32_t>(stored.type)},
            {"name", NameOrNull(stored.name)},
            {"structure", item.structure},
            {"mesh", IndexOrNull(stored.tessellation)},
            {"material", IndexOrNull(item.style.style)},
            {"shown", item.isShown}};
}

Json TreeJson(const InspectedModel& inspected)
{
    Json list = Json::array();
    auto item = inspected.scene.items.begin();
    for (std::uint32_t node = 0; node < inspected.scene.occurrences.size(); ++node) {
        const PlacedOccurrence& placed = inspected.scene.occurrences[node];
        const ProductOccurrence& stored = inspected.model.structures[placed.structure].occurrences[placed.occurrence];
        Json items = Json::array();
        for (; item != inspected.scene.items.end() && item->occurrence == node; ++item)
            items.push_back(ItemJson(inspected, *item));
        list.push_back({{"node", node},
                        {"parent", IndexOrNull(placed.parent)},
                        {"name", NameOrNull(stored.name)},
                        {"structure", placed.structure},
                        {"occurrence", placed.occurrence},
                        {"shown", placed.isShown},
                        {"transform", stored.location ? Json(*stored.location) : Json(nullptr)},
                        {"items", items}});
    }
    return list;
}

Json MeshesJson(const ModelStatistics& statistics)
{
    Json list = Json::array();
    for (const MeshStatistics& mesh : statistics.meshes) {
        Json box = nullptr;
        if (mesh.hasBox)
            box = {{"minimum", mesh.minimum}, {"maximum", mesh.maximum}};
        list.push_back({{"structure", mesh.structure},
                        {"mesh", mesh.index},
                        {"type", mesh.type},
                        {"points", mesh.points},
                        {"normals", mesh.normals},
                        {"textureCoordinates", mesh.textureCoordinates},
                        {"faces", mesh.faces},
                        {"unusableFaces", mesh.unusableFaces},
                        {"triangles", mesh.triangles},
                        {"box", box},
                        {"instances", mesh.instances}});
    }
    return list;
}

Json ColourJson(const Globals& globals, std::uint32_t colour)
{
    return colour < globals.colours.size() ? Json(globals.colours[colour]) : Json(nullptr);
}

Json MaterialJson(const Globals& globals, std::uint32_t structure, std::uint32_t style)
{
    const Appearance appearance = appearanceOf(globals, style);
    const bool hasTexture = appearance.texture != nullptr;
    Json json = {{"structure", structure},
                 {"material", style},
                 {"name", NameOrNull(globals.styles[style].name)},
                 {"colour", appearance.colour != nullptr ? Json(*appearance.colour) : Json(nullptr)},
                 {"alpha", appearance.alpha},
                 {"texture", hasTexture ? Json(appearance.texture - globals.textures.data()) : Json(nullptr)}};
    if (const Material* const material = appearance.material) {
        if (!globals.styles[style].name)
            json["name"] = NameOrNull(material->name);
        json["ambient"] = ColourJson(globals, material->ambient);
        json["emissive"] = ColourJson(globals, material->emissive);
        json["specular"] = ColourJson(globals, material->specular);
        json["shininess"] = material->shininess;
    }
    return json;
}

Json TextureJson(const FileStructure& structure, std::uint32_t number, std::uint32_t texture)
{
    const TextureDefinition& definition = structure.globals.textures[texture];
    Json json = {{"structure", number},
                 {"texture", texture},
                 {"name", NameOrNull(definition.name)},
                 {"picture", IndexOrNull(definition.picture)},
                 {"function", definition.function},
                 {"wrap", {definition.wrapS, definition.wrapT}}};
    if (definition.picture != prc::nullIndex) {
        const PictureSize size = sizeOf(structure, definition.picture);
        json["format"] = PictureFormatName(structure.globals.pictures[definition.picture].format);
        json["width"] = size.width;
        json["height"] = size.height;
        json["bytes"] = storedBytes(structure, definition.picture).size();
    }
    return json;
}

void AddMaterials(Json& report, const PRCModel& model)
{
    Json materials = Json::array();
    Json textures = Json::array();
    for (std::uint32_t number = 0; number < model.structures.size(); ++number) {
        const FileStructure& structure = model.structures[number];
        for (std::uint32_t style = 0; style < structure.globals.styles.size(); ++style)
            materials.push_back(MaterialJson(structure.globals, number, style));
        for (std::uint32_t texture = 0; texture < structure.globals.textures.size(); ++texture)
            textures.push_back(TextureJson(structure, number, texture));
    }
    report["materials"] = std::move(materials);
    report["textures"] = std::move(textures);
}

Json FindingsJson(const PRCModel& model)
{
    Json list = Json::array();
    for (const Finding& finding : model.findings)
        list.push_back({{"severity", finding.severity == Severity::Error ? "error" : "note"},
                        {"place", finding.place},
                        {"text", finding.text}});
    return list;
}

Json PdfJson(const std::optional<PdfOrigin>& pdf)
{
    if (!pdf)
        return nullptr;
    Json streams = Json::array();
    for (const Pdf::ModelStream& stream : pdf->streams) {
        streams.push_back({{"stream", streams.size() + 1},
                           {"subtype", stream.subtype},
                           {"page", stream.page == 0 ? Json(nullptr) : Json(stream.page)},
                           {"name", stream.name},
                           {"storedBytes", stream.storedBytes}});
    }
    return {{"stream", pdf->chosen + 1}, {"streams", streams}};
}

Json HeadJson(const InspectedModel& inspected)
{
    const PRCModel& model = inspected.model;
    const ModelStatistics& statistics = inspected.statistics;
    return {{"file", inspected.file},
            {"format", "prc"},
            {"pdf", PdfJson(inspected.pdf)},
            {"bytes", model.fileSize},
            {"minimalVersion", model.minimalVersionForRead},
            {"authoringVersion", model.authoringVersion},
            {"id", HexOf(model.id)},
            {"name", NameOrNull(model.name)},
            {"unitInMillimetres", model.unitInMillimetres},
            {"complete", !model.hasErrors()},
            {"structures", model.structures.size()},
            {"nodes", inspected.scene.occurrences.size()},
            {"parts", statistics.parts},
            {"meshesStored", statistics.meshes.size()},
            {"meshesPlaced", statistics.placedMeshes},
            {"meshesShared", statistics.sharedMeshes},
            {"trianglesStored", statistics.storedTriangles},
            {"trianglesPlaced", statistics.placedTriangles}};
}

} // namespace

std::string JsonReport(const InspectedModel& inspected, const ReportParts& parts)
{
    Json report = HeadJson(inspected);
    if (parts.sections)
        report["sections"] = SectionsJson(inspected.model);
    if (parts.tree)
        report["tree"] = TreeJson(inspected);
    if (parts.meshes)
        report["meshes"] = MeshesJson(inspected.statistics);
    if (parts.materials)
        AddMaterials(report, inspected.model);
    report["findings"] = FindingsJson(inspected.model);
    return report.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace Orvel::Cli
