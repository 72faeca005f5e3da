#include "tool/import/DocumentBuilder.h"

#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelSceneNode.h"
#include "tool/import/DocumentMaterials.h"
#include "tool/import/DocumentParts.h"
#include "tool/import/MergeParts.h"

#include <string>
#include <unordered_map>
#include <utility>

namespace Orvel::Import
{
namespace
{

UnitChange UnitChangeFor(const ImportedScene& scene, const BuildOptions& options)
{
    UnitChange change;
    if (options.scale)
        change.scale = *options.scale;
    else if (scene.unitInMillimetres > 0.0)
        change.scale = scene.unitInMillimetres;

    const bool isKnown = scene.upAxis != UpAxis::Unknown;
    if (options.up == Up::Keep || (options.up == Up::Default && !isKnown))
        return change;
    const UpAxis from = isKnown ? scene.upAxis : UpAxis::Y;
    const UpAxis to = options.up == Up::Y ? UpAxis::Y : UpAxis::Z;
    if (from != to) {
        change.from = from;
        change.to = to;
    }
    return change;
}

/// Names for the parts of one node, as far as possible different ones: "mesh (material)" where there are several, with
/// the part's number where that is not enough.
std::vector<std::string> PartNames(const ImportedNode& node, const std::vector<ImportedMaterial>& materials)
{
    std::vector<std::string> names;
    std::unordered_map<std::string, std::size_t> timesUsed;
    names.reserve(node.parts.size());
    for (const ImportedPart& part : node.parts) {
        std::string& name = names.emplace_back(PartName(node, part, materials));
        if (node.parts.size() > 1 && part.material != None) {
            const std::string& materialName = materials[static_cast<std::size_t>(part.material)].name;
            if (!materialName.empty())
                name += (name.empty() ? "" : " ") + ("(" + materialName + ")");
        }
        ++timesUsed[name];
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (timesUsed[names[i]] > 1)
            names[i] += (names[i].empty() ? "" : " ") + std::to_string(i + 1);
    }
    return names;
}

/// Makes the nodes of the document.
class NodeMaker
{
public:
    /// @param scene, parts not owned; must outlive this object.
    /// @param built        not owned; receives nodes, cameras and their counts.
    NodeMaker(const ImportedScene& scene, DocumentParts& parts, BuiltDocument& built);

    /// @param top stands above all nodes; null: the scene's roots become the document's.
    void MakeTree(COrvelSceneNode* top);

private:
    struct Waiting
    {
        Index node;
        COrvelSceneNode* parent; ///< null: the document
        std::size_t depth;       ///< 1 for the scene's roots
    };

    COrvelSceneNode* MakeNode(const ImportedNode& node);
    COrvelSceneNode* MakeGroup(const ImportedNode& node);
    COrvelSceneNode* MakeCamera(const ImportedNode& node);
    COrvelSceneNode* MakePart(const ImportedPart& part, const std::string& name);

    const ImportedScene& scene;
    DocumentParts& parts;
    BuiltDocument& built;
    COrvelDocument* document;
};

NodeMaker::NodeMaker(const ImportedScene& theScene, DocumentParts& theParts, BuiltDocument& theBuilt)
    : scene(theScene)
    , parts(theParts)
    , built(theBuilt)
    , document(theBuilt.document.get())
{}

void NodeMaker::MakeTree(COrvelSceneNode* top)
{
    // A stack of its own, since the depth is the file's. Siblings go onto it last first.
    std::vector<Waiting> waiting;
    for (auto root = scene.roots.rbegin(); root != scene.roots.rend(); ++root)
        waiting.push_back({*root, top, 1});
    while (!waiting.empty()) {
        const auto [index, parent, depth] = waiting.back();
        waiting.pop_back();
        if (depth > MaximumNodeDepth)
            throw ImportError("its nodes are nested more than " + std::to_string(MaximumNodeDepth) + " levels deep");
        const ImportedNode& source = scene.nodes[static_cast<std::size_t>(index)];
        COrvelSceneNode* node = MakeNode(source);
        built.nodes[static_cast<std::size_t>(index)] = node;
        if (parent)
            parent->AddChild(node);
        else
            document->AddRootNode(node);
        for (auto child = source.children.rbegin(); child != source.children.rend(); ++child)
            waiting.push_back({*child, node, depth + 1});
    }
}

COrvelSceneNode* NodeMaker::MakeNode(const ImportedNode& source)
{
    const bool isOnePart = source.parts.size() == 1 && source.children.empty() && source.camera == None;
    COrvelSceneNode* node = nullptr;
    if (isOnePart)
        node = MakePart(source.parts.front(), source.name.empty() ? source.parts.front().name : source.name);
    else
        node = MakeGroup(source);
    node->SetLocalMatrix(source.matrix);
    if (source.hidden) {
        node->Hide();
        ++built.summary.hiddenNodes;
    }
    return node;
}

COrvelSceneNode* NodeMaker::MakeGroup(const ImportedNode& source)
{
    COrvelSceneNode* group = nullptr;
    if (source.camera != None) {
        group = MakeCamera(source);
    } else {
        group = COrvelSceneNode::Create(document, COrvelString(source.name));
        ++built.summary.nodes;
    }
    const std::vector<std::string> names = PartNames(source, scene.materials);
    for (std::size_t i = 0; i < source.parts.size(); ++i)
        group->AddChild(MakePart(source.parts[i], names[i]));
    return group;
}

COrvelSceneNode* NodeMaker::MakeCamera(const ImportedNode& source)
{
    const ImportedCamera& values = scene.cameras[static_cast<std::size_t>(source.camera)];
    COrvelCamera* camera =
        COrvelCamera::Create(document, COrvelString(source.name.empty() ? values.name : source.name));
    if (values.perspective)
        camera->SetFOV(values.verticalFieldOfViewInDegrees);
    built.cameras.push_back({camera, values});
    ++built.summary.nodes;
    return camera;
}

COrvelSceneNode* NodeMaker::MakePart(const ImportedPart& source, const std::string& name)
{
    ++built.summary.nodes;
    if (!parts.IsVisible(source))
        return COrvelSceneNode::Create(document, COrvelString(name));
    const DocumentPart& part = parts.PartFor(source);
    COrvel3DObject* object = COrvel3DObject::Create(document, COrvelString(name), part.geometry);
    // The default material shows in objects that have none of their own.
    if (!part.material->IsDefault())
        object->SetMaterial(part.material);
    object->SetTextureCoordinatesTable(part.textureCoordinates);
    ++built.summary.objects;
    built.summary.trianglesPlaced += part.triangles;
    return object;
}

} // namespace

BuiltDocument BuildDocument(ImportedScene scene, TextureFiles& textures, const BuildOptions& options)
{
    BuiltDocument built;
    built.document = std::make_unique<COrvelDocument>();
    COrvelDocument& document = *built.document;
    MergeParts(scene);
    DocumentMaterials materials(document, scene, textures);
    DocumentParts parts(document, scene, materials, options.creaseAngleInDegrees);

    COrvelSceneNode* top = nullptr;
    const UnitChange unitChange = UnitChangeFor(scene, options);
    if (!unitChange.IsIdentity() && !scene.roots.empty()) {
        top = COrvelSceneNode::Create(&document, COrvelString(std::string(UnitGroupName)));
        top->SetLocalMatrix(UnitMatrix(unitChange));
        document.AddRootNode(top);
        built.summary.unitChange = unitChange;
    }
    built.nodes.resize(scene.nodes.size(), nullptr);
    NodeMaker(scene, parts, built).MakeTree(top);
    built.materials = materials.Made();
    for (std::size_t i = 0; i < scene.variants.size(); ++i)
        built.variants.push_back({std::move(scene.variants[i]), materials.Variants()[i]});
    built.clips = std::move(scene.clips);

    const DocumentParts::Totals made = parts.Made();
    built.summary.format = scene.format;
    built.summary.meshes = made.geometries;
    built.summary.trianglesStored = made.triangles;
    built.summary.materials = materials.Used();
    built.looks = materials.TakeLooks();
    built.summary.textures = textures.Used();
    return built;
}

} // namespace Orvel::Import
