#include "tool/cli/InspectReport.h"

#include "platform/prcfile/PRCPicture.h"
#include "tool/cli/Text.h"

#include <algorithm>
#include <array>

namespace Orvel::Cli
{

namespace
{

using namespace prc::Model;

std::string Padded(const std::string& text, std::size_t width)
{
    return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

std::string PaddedRight(const std::string& text, std::size_t width)
{
    return text.size() < width ? text + std::string(width - text.size(), ' ') : text;
}

template <typename Numbers>
std::string List(const Numbers& numbers)
{
    std::string text = "(";
    for (const double number : numbers)
        text += (text.size() > 1 ? ", " : "") + ShortestText(number);
    return text + ")";
}

/// Numbers of entities, told apart by file structure where a file has several.
std::string Numbered(const PRCModel& model, std::uint32_t structure, std::uint32_t index)
{
    return (model.structures.size() > 1 ? std::to_string(structure) + ":" : std::string()) + std::to_string(index);
}

std::string NameText(const Name& name)
{
    return name ? Quoted(*name) : std::string("without a name");
}

/// A translation in short, anything else as the rows of the matrix.
std::string TransformText(const prc::Matrix& matrix)
{
    prc::Matrix withoutTranslation = matrix;
    for (const std::size_t entry : {3U, 7U, 11U})
        withoutTranslation[entry] = 0.0;
    if (withoutTranslation == prc::identityMatrix)
        return "moved by " + List(std::array{matrix[3], matrix[7], matrix[11]});
    std::string text = "transformed by";
    for (std::size_t row = 0; row < 3; ++row)
        text += " " + List(std::array{matrix[4 * row], matrix[4 * row + 1], matrix[4 * row + 2], matrix[4 * row + 3]});
    return text;
}

std::string PdfText(const std::optional<PdfOrigin>& pdf)
{
    std::string text;
    for (std::size_t i = 0; pdf && i < pdf->streams.size(); ++i) {
        const Pdf::ModelStream& stream = pdf->streams[i];
        text += "  stream " + std::to_string(i + 1) + " of the PDF: " + FormatName(stream) +
                (stream.page == 0 ? " on no page" : " on page " + std::to_string(stream.page)) +
                (stream.name.empty() ? "" : ", " + Quoted(stream.name)) +
                (i == pdf->chosen ? "; this one is told of\n" : "\n");
    }
    return text;
}

std::string HeadText(const InspectedModel& inspected)
{
    const PRCModel& model = inspected.model;
    const ModelStatistics& statistics = inspected.statistics;
    std::string text = Quoted(inspected.file) + ": PRC, " + std::to_string(model.fileSize) + " bytes\n";
    text += PdfText(inspected.pdf);
    text += "  version " + std::to_string(model.minimalVersionForRead) + " of the format, written by version " +
            std::to_string(model.authoringVersion) + "\n";
    text += "  model " + NameText(model.name) + ", unit " + ShortestText(model.unitInMillimetres) + " mm\n";
    text += "  " + Count(model.structures.size(), "file structure", "file structures") + ", " +
            Count(inspected.scene.occurrences.size(), "node", "nodes") + ", " +
            Count(statistics.parts, "part", "parts") + "\n";
    text += "  " + Count(statistics.meshes.size(), "mesh", "meshes") + " stored with " +
            Count(statistics.storedTriangles, "triangle", "triangles") + ", " +
            std::to_string(statistics.placedMeshes) + " placed with " + std::to_string(statistics.placedTriangles) +
            "; " + std::to_string(statistics.sharedMeshes) + " placed more than once\n";
    return text;
}

std::string SectionLine(const std::string& name, const SectionSummary& section)
{
    const std::string state = section.state == SectionState::Read ? "" : "  " + StateName(section.state);
    return "  " + PaddedRight(name, 18) + Padded(std::to_string(section.storedBytes), 12) +
           Padded(std::to_string(section.unpackedBytes), 12) + state + "\n";
}

std::string SectionsText(const PRCModel& model)
{
    std::string text = "\nSections               stored    unpacked\n";
    text += SectionLine("main header", {SectionState::Read, 0, model.headerBytes, model.headerBytes});
    for (std::size_t structure = 0; structure < model.structures.size(); ++structure) {
        for (std::size_t section = 0; section < prc::sectionCount; ++section)
            text += SectionLine(SectionName(section) +
                                    (model.structures.size() > 1 ? " " + std::to_string(structure) : std::string()),
                                model.structures[structure].sections[section]);
    }
    return text + SectionLine("model file", model.modelFile);
}

std::string ItemText(const InspectedModel& inspected, const PlacedItem& item)
{
    const RepresentationItem& stored = inspected.model.structures[item.structure].parts[item.part].items[item.item];
    std::string text = stored.tessellation == prc::nullIndex
                           ? "an item without a mesh"
                           : "mesh " + Numbered(inspected.model, item.structure, stored.tessellation);
    if (stored.name)
        text += " " + Quoted(*stored.name);
    if (item.style.style != prc::nullIndex)
        text += ", material " + Numbered(inspected.model, item.style.structure, item.style.style);
    return text + (item.isShown ? "" : ", hidden");
}

std::string TreeText(const InspectedModel& inspected)
{
    // Deep trees would be mostly blanks.
    constexpr std::uint32_t deepestIndent = 40;
    std::string text = "\nTree\n";
    auto item = inspected.scene.items.begin();
    for (std::uint32_t node = 0; node < inspected.scene.occurrences.size(); ++node) {
        const PlacedOccurrence& placed = inspected.scene.occurrences[node];
        const ProductOccurrence& stored = inspected.model.structures[placed.structure].occurrences[placed.occurrence];
        const std::string indent(2 + 2 * std::min(placed.depth, deepestIndent), ' ');
        text += indent + std::to_string(node) + " " + NameText(stored.name);
        if (stored.location)
            text += ", " + TransformText(*stored.location);
        text += placed.isShown ? "\n" : ", hidden\n";
        for (; item != inspected.scene.items.end() && item->occurrence == node; ++item)
            text += indent + "    " + ItemText(inspected, *item) + "\n";
    }
    return text;
}

std::string MeshesText(const InspectedModel& inspected)
{
    std::string text = "\nMeshes\n";
    for (const MeshStatistics& mesh : inspected.statistics.meshes) {
        text += "  " + Numbered(inspected.model, mesh.structure, mesh.index) + " ";
        if (mesh.type != "mesh") {
            text += mesh.type + ", not decoded, placed " + Count(mesh.instances, "time", "times") + "\n";
            continue;
        }
        text += Count(mesh.triangles, "triangle", "triangles") + " in " + Count(mesh.faces, "face", "faces") + ", " +
                Count(mesh.points, "point", "points") + ", " + Count(mesh.normals, "normal", "normals") + ", " +
                std::to_string(mesh.textureCoordinates) + " texture coordinates, placed " +
                Count(mesh.instances, "time", "times");
        if (mesh.hasBox)
            text += ", from " + List(mesh.minimum) + " to " + List(mesh.maximum);
        text += "\n";
    }
    return text;
}

std::string MaterialText(const PRCModel& model, std::uint32_t number, std::uint32_t style)
{
    const Globals& globals = model.structures[number].globals;
    const Appearance appearance = appearanceOf(globals, style);
    std::string text = "  " + Numbered(model, number, style);
    if (globals.styles[style].name)
        text += " " + Quoted(*globals.styles[style].name);
    else if (appearance.material != nullptr && appearance.material->name)
        text += " " + Quoted(*appearance.material->name);
    if (appearance.colour != nullptr)
        text += " colour " + List(*appearance.colour);
    if (const Material* const material = appearance.material) {
        const auto add = [&](const char* what, std::uint32_t colour) {
            if (colour < globals.colours.size())
                text += std::string(", ") + what + " " + List(globals.colours[colour]);
        };
        add("ambient", material->ambient);
        add("emissive", material->emissive);
        add("specular", material->specular);
        text += ", shininess " + ShortestText(material->shininess);
    }
    text += ", alpha " + ShortestText(appearance.alpha);
    if (appearance.texture != nullptr)
        text += ", texture " +
                Numbered(model, number, static_cast<std::uint32_t>(appearance.texture - globals.textures.data()));
    return text + "\n";
}

std::string TextureText(const PRCModel& model, std::uint32_t number, std::uint32_t texture)
{
    const FileStructure& structure = model.structures[number];
    const TextureDefinition& definition = structure.globals.textures[texture];
    std::string text = "  " + Numbered(model, number, texture);
    if (definition.picture == prc::nullIndex)
        return text + " without a picture\n";
    const PictureSize size = sizeOf(structure, definition.picture);
    return text + " " + PictureFormatName(structure.globals.pictures[definition.picture].format) + ", " +
           std::to_string(size.width) + " x " + std::to_string(size.height) + " pixels, " +
           std::to_string(storedBytes(structure, definition.picture).size()) + " bytes\n";
}

std::string MaterialsText(const PRCModel& model)
{
    std::string materials;
    std::string textures;
    for (std::uint32_t number = 0; number < model.structures.size(); ++number) {
        const Globals& globals = model.structures[number].globals;
        for (std::uint32_t style = 0; style < globals.styles.size(); ++style)
            materials += MaterialText(model, number, style);
        for (std::uint32_t texture = 0; texture < globals.textures.size(); ++texture)
            textures += TextureText(model, number, texture);
    }
    std::string text = "\nMaterials\n" + materials;
    if (!textures.empty())
        text += "\nTextures\n" + textures;
    return text;
}

} // namespace

std::string PictureFormatName(PictureFormat format)
{
    switch (format) {
    case PictureFormat::Png:
        return "png";
    case PictureFormat::Jpeg:
        return "jpeg";
    case PictureFormat::Rgb:
        return "rgb";
    case PictureFormat::Rgba:
        return "rgba";
    case PictureFormat::Grey:
        return "grey";
    case PictureFormat::GreyAlpha:
        return "grey alpha";
    }
    return "unknown";
}

std::string SectionName(std::size_t section)
{
    constexpr std::array<const char*, prc::sectionCount> names = {"header and pictures", "globals",  "tree",
                                                                  "tessellation",        "geometry", "extra geometry"};
    return names[section];
}

std::string StateName(SectionState state)
{
    switch (state) {
    case SectionState::Read:
        return "read";
    case SectionState::Partial:
        return "partial";
    case SectionState::Skipped:
        return "skipped";
    case SectionState::Damaged:
        return "damaged";
    case SectionState::Absent:
        break;
    }
    return "absent";
}

std::string TextReport(const InspectedModel& inspected, const ReportParts& parts)
{
    std::string text = HeadText(inspected);
    if (parts.sections)
        text += SectionsText(inspected.model);
    if (parts.tree)
        text += TreeText(inspected);
    if (parts.meshes)
        text += MeshesText(inspected);
    if (parts.materials)
        text += MaterialsText(inspected.model);
    return text;
}

} // namespace Orvel::Cli
