#include "platform/prcfile/ReferenceChecks.h"

namespace prc
{

namespace
{

using namespace Model;

void resolveColour(std::uint32_t& index, IndexCheck& check)
{
    if (index == nullIndex)
        return;
    if (index % 3 != 0) {
        check.refuse(index);
        return;
    }
    index /= 3;
    check(index);
}

void resolveApplication(TextureApplication& application, const Globals& globals, IndexCheck& textures,
                        IndexCheck& materials)
{
    textures(application.texture);
    materials(application.material);
    materials(application.next);
    if (application.material != nullIndex && !std::holds_alternative<Material>(globals.materials[application.material]))
        materials.refuse(application.material);
    if (application.next != nullIndex &&
        !std::holds_alternative<TextureApplication>(globals.materials[application.next]))
        materials.refuse(application.next);
}

void resolveGlobals(Globals& globals, std::size_t storedFiles, Findings& findings)
{
    IndexCheck files(findings, "indices of stored pictures", storedFiles);
    IndexCheck pictures(findings, "picture indices", globals.pictures.size());
    IndexCheck textures(findings, "texture indices", globals.textures.size());
    IndexCheck materials(findings, "material indices", globals.materials.size());
    IndexCheck colours(findings, "colour indices", globals.colours.size());
    IndexCheck patterns(findings, "line pattern indices", globals.linePatterns.size());
    for (Picture& picture : globals.pictures)
        files(picture.file);
    for (TextureDefinition& texture : globals.textures)
        pictures(texture.picture);
    for (MaterialEntry& entry : globals.materials) {
        if (auto* const application = std::get_if<TextureApplication>(&entry)) {
            resolveApplication(*application, globals, textures, materials);
            continue;
        }
        auto& material = std::get<Material>(entry);
        for (std::uint32_t* const colour :
             {&material.ambient, &material.diffuse, &material.emissive, &material.specular})
            resolveColour(*colour, colours);
    }
    for (Style& style : globals.styles) {
        materials(style.material);
        resolveColour(style.colour, colours);
        patterns(style.linePattern);
    }
    for (IndexCheck* const check : {&files, &pictures, &textures, &materials, &colours, &patterns})
        check->report();
}

void resolveTree(FileStructure& structure, Findings& findings)
{
    IndexCheck styles(findings, "style indices of the tree", structure.globals.styles.size());
    IndexCheck systems(findings, "coordinate system indices", structure.globals.coordinateSystems.size());
    IndexCheck meshes(findings, "tessellation indices", structure.tessellations.size());
    IndexCheck parts(findings, "part indices", structure.parts.size());
    IndexCheck children(findings, "child indices", structure.occurrences.size());
    IndexCheck roots(findings, "root indices", structure.occurrences.size());
    for (Part& part : structure.parts) {
        styles(part.graphics.style);
        for (RepresentationItem& item : part.items) {
            styles(item.graphics.style);
            systems(item.coordinateSystem);
            meshes(item.tessellation);
        }
    }
    for (ProductOccurrence& occurrence : structure.occurrences) {
        styles(occurrence.graphics.style);
        parts(occurrence.part);
        for (std::uint32_t& child : occurrence.children)
            children(child);
        std::erase(occurrence.children, nullIndex);
        for (EntityReference& reference : occurrence.entityReferences) {
            styles(reference.graphics.style);
            systems(reference.coordinateSystem);
        }
    }
    roots(structure.root);
    for (IndexCheck* const check : {&styles, &systems, &meshes, &parts, &children, &roots})
        check->report();
}

} // namespace

void resolveReferences(FileStructure& structure, Findings& findings)
{
    resolveGlobals(structure.globals, structure.storedFiles.size(), findings);
    resolveTree(structure, findings);
    IndexCheck styles(findings, "style indices of faces", structure.globals.styles.size());
    for (Tessellation& mesh : structure.tessellations) {
        for (Face& face : mesh.faces) {
            for (std::uint32_t& style : face.styles)
                styles(style);
        }
    }
    styles.report();
}

void resolveOccurrenceReferences(std::span<FileStructure> structures, Findings& findings)
{
    std::size_t unresolved = 0;
    for (FileStructure& structure : structures) {
        for (ProductOccurrence& occurrence : structure.occurrences) {
            for (OccurrenceReference* const reference : {&occurrence.prototype, &occurrence.externalData}) {
                if (reference->occurrence == nullIndex)
                    continue;
                const bool exists = reference->structure < structures.size() &&
                                    reference->occurrence < structures[reference->structure].occurrences.size();
                if (!exists) {
                    *reference = {};
                    ++unresolved;
                }
            }
        }
    }
    if (unresolved > 0)
        findings.note(std::to_string(unresolved) + " references to other occurrences lead nowhere and count as none");
}

} // namespace prc
