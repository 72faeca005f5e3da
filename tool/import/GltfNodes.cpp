#include "tool/import/GltfNodes.h"

#include "tool/import/ComposeTransform.h"
#include "tool/import/GltfTransforms.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace Orvel::Import
{

namespace
{

constexpr const char* InstancingExtension = "EXT_mesh_gpu_instancing";

std::string Place(const tinygltf::Node& node, int number)
{
    return node.name.empty() ? "node " + std::to_string(number) : "node " + Quoted(node.name);
}

bool IsHidden(const tinygltf::Node& node)
{
    const auto found = node.extensions.find("KHR_node_visibility");
    if (found == node.extensions.end() || !found->second.IsObject())
        return false;
    const tinygltf::Value& visible = found->second.Get("visible");
    return visible.IsBool() && !visible.Get<bool>();
}

/// Accessor of an attribute of instances, -1 when it has none. Their indices were checked with the document's shape.
int InstanceAttribute(const tinygltf::Node& node, const char* name)
{
    const auto found = node.extensions.find(InstancingExtension);
    if (found == node.extensions.end() || !found->second.IsObject())
        return -1;
    const tinygltf::Value& attributes = found->second.Get("attributes");
    const tinygltf::Value& accessor = attributes.IsObject() ? attributes.Get(name) : attributes;
    return accessor.IsInt() ? accessor.GetNumberAsInt() : -1;
}

/// One attribute of all instances; its fallback serves where the file has none.
template <std::size_t Width>
class InstanceValues
{
public:
    InstanceValues(GltfAccessors& accessors, int accessor, const std::array<double, Width>& fallbackValue)
        : fallback(fallbackValue)
    {
        if (accessor >= 0)
            values = accessors.Numbers(accessor, static_cast<int>(Width));
    }

    [[nodiscard]] std::size_t Count() const { return values.size() / Width; }

    [[nodiscard]] std::array<double, Width> At(std::size_t instance) const
    {
        std::array<double, Width> value = fallback;
        if (instance < Count())
            std::copy_n(values.begin() + static_cast<std::ptrdiff_t>(Width * instance), Width, value.begin());
        return value;
    }

private:
    std::vector<double> values;
    std::array<double, Width> fallback;
};

double UsableFieldOfView(double radians)
{
    return radians > 0.0 && radians < std::numbers::pi ? radians * 180.0 / std::numbers::pi
                                                       : ImportedCamera().verticalFieldOfViewInDegrees;
}

} // namespace

GltfNodes::GltfNodes(const GltfDocument& gltfDocument, GltfAccessors& gltfAccessors, GltfMeshes& gltfMeshes,
                     ImportedScene& importedScene, ImportReport& importReport)
    : document(gltfDocument)
    , accessors(gltfAccessors)
    , meshes(gltfMeshes)
    , scene(importedScene)
    , report(importReport)
    , imported(document.model.nodes.size(), None)
    , cameras(document.model.cameras.size(), None)
{}

void GltfNodes::Convert()
{
    std::vector<Visit> waiting;
    const std::vector<int> roots = Roots();
    for (auto root = roots.rbegin(); root != roots.rend(); ++root)
        waiting.push_back({*root, None});
    while (!waiting.empty()) {
        const Visit visit = waiting.back();
        waiting.pop_back();
        Enter(visit);
        const Index self = imported[static_cast<std::size_t>(visit.node)];
        const std::vector<int>& children = document.model.nodes[static_cast<std::size_t>(visit.node)].children;
        for (auto child = children.rbegin(); child != children.rend(); ++child)
            waiting.push_back({*child, self});
    }
    report.CountLeftOut("skin", "skins", skins.size());
    report.CountLeftOut("node outside the scene shown", "nodes outside the scene shown",
                        static_cast<std::size_t>(std::count(imported.begin(), imported.end(), None)));
}

std::vector<int> GltfNodes::Roots() const
{
    const tinygltf::Model& model = document.model;
    if (model.scenes.empty())
        return NodesWithoutParent();
    return model.scenes[static_cast<std::size_t>(std::max(model.defaultScene, 0))].nodes;
}

std::vector<int> GltfNodes::NodesWithoutParent() const
{
    const std::vector<tinygltf::Node>& nodes = document.model.nodes;
    std::vector<bool> hasParent(nodes.size(), false);
    for (const tinygltf::Node& node : nodes)
        for (const int child : node.children)
            hasParent[static_cast<std::size_t>(child)] = true;
    std::vector<int> roots;
    for (std::size_t i = 0; i < nodes.size(); ++i)
        if (!hasParent[i])
            roots.push_back(static_cast<int>(i));
    if (roots.empty() && !nodes.empty())
        throw ImportError("every node is a child of another: the nodes form a circle");
    return roots;
}

void GltfNodes::Enter(const Visit& visit)
{
    const tinygltf::Node& source = document.model.nodes[static_cast<std::size_t>(visit.node)];
    Index& self = imported[static_cast<std::size_t>(visit.node)];
    if (self != None)
        throw ImportError(Place(source, visit.node) + " is reached twice: it is part of a circle or has two parents");

    self = static_cast<Index>(scene.nodes.size());
    scene.nodes.emplace_back();
    std::vector<Index>& siblings =
        visit.parent == None ? scene.roots : scene.nodes[static_cast<std::size_t>(visit.parent)].children;
    siblings.push_back(self);
    ConvertNode(visit.node, scene.nodes.back());
    if (source.mesh >= 0 && source.extensions.contains(InstancingExtension))
        ExpandInstances(visit.node, self);
}

void GltfNodes::ConvertNode(int node, ImportedNode& target)
{
    const tinygltf::Node& source = document.model.nodes[static_cast<std::size_t>(node)];
    target.name = source.name;
    target.hidden = IsHidden(source);
    try {
        target.matrix = LocalTransform(source);
    } catch (const ImportError& error) {
        throw ImportError(Place(source, node) + ": " + error.what());
    }
    if (source.mesh >= 0)
        target.parts = meshes.Parts(source.mesh);
    if (source.camera >= 0)
        target.camera = ConvertCamera(source.camera);
    if (source.skin >= 0)
        skins.insert(source.skin);
    if (source.extensions.contains("KHR_lights_punctual"))
        report.CountLeftOut("light", "lights");
}

void GltfNodes::ExpandInstances(int node, Index parent)
{
    const tinygltf::Node& source = document.model.nodes[static_cast<std::size_t>(node)];
    const InstanceValues<3> translations(accessors, InstanceAttribute(source, "TRANSLATION"), {0.0, 0.0, 0.0});
    const InstanceValues<4> rotations(accessors, InstanceAttribute(source, "ROTATION"), {0.0, 0.0, 0.0, 1.0});
    const InstanceValues<3> scales(accessors, InstanceAttribute(source, "SCALE"), {1.0, 1.0, 1.0});
    const std::size_t count = std::max({translations.Count(), rotations.Count(), scales.Count()});
    if (count == 0)
        return;

    const std::vector<ImportedPart> parts = std::exchange(scene.nodes[static_cast<std::size_t>(parent)].parts, {});
    for (std::size_t i = 0; i < count; ++i) {
        ImportedNode instance;
        instance.name = source.name;
        instance.parts = parts;
        instance.matrix = ComposeTransform(translations.At(i), rotations.At(i), scales.At(i));
        const auto& values = instance.matrix.Values();
        if (!std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); }))
            throw ImportError(Place(source, node) + ": the transform of instance " + std::to_string(i) +
                              " is not finite");
        scene.nodes[static_cast<std::size_t>(parent)].children.push_back(static_cast<Index>(scene.nodes.size()));
        scene.nodes.push_back(std::move(instance));
    }
}

Index GltfNodes::ConvertCamera(int camera)
{
    Index& place = cameras.at(static_cast<std::size_t>(camera));
    if (place != None)
        return place;
    const tinygltf::Camera& source = document.model.cameras[static_cast<std::size_t>(camera)];
    ImportedCamera target;
    target.name = source.name;
    target.perspective = source.type != "orthographic";
    if (target.perspective)
        target.verticalFieldOfViewInDegrees = UsableFieldOfView(source.perspective.yfov);
    else
        target.orthographicHeight = 2.0 * std::abs(source.orthographic.ymag);
    place = static_cast<Index>(scene.cameras.size());
    scene.cameras.push_back(std::move(target));
    return place;
}

} // namespace Orvel::Import
