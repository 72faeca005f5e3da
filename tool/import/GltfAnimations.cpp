#include "tool/import/GltfAnimations.h"

#include "tool/import/AddClip.h"
#include "tool/import/DistinctNames.h"
#include "tool/import/GltfMaterialProperties.h"
#include "tool/import/GltfTransforms.h"
#include "tool/import/ImportedTrackChecks.h"
#include "tool/import/TrackEvaluation.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

namespace Orvel::Import
{

namespace
{

constexpr std::size_t WidestProperty = 4;

/// Takes "12/rest" apart.
struct NumberedPath
{
    int number = -1;
    std::string_view rest;
};

/// @return nothing when the pointer does not lead into `table` ("/nodes/").
std::optional<NumberedPath> PathIn(std::string_view table, std::string_view pointer)
{
    if (!pointer.starts_with(table))
        return std::nullopt;
    pointer.remove_prefix(table.size());
    NumberedPath path;
    const auto end = std::from_chars(pointer.data(), pointer.data() + pointer.size(), path.number);
    const auto length = static_cast<std::size_t>(end.ptr - pointer.data());
    if (end.ec != std::errc() || path.number < 0 || length == pointer.size() || pointer[length] != '/')
        return std::nullopt;
    path.rest = pointer.substr(length + 1);
    return path;
}

Interpolation InterpolationOf(const std::string& name)
{
    if (name == "STEP")
        return Interpolation::Step;
    if (name == "CUBICSPLINE")
        return Interpolation::CubicSpline;
    if (name.empty() || name == "LINEAR")
        return Interpolation::Linear;
    throw ImportError("it has the unknown interpolation " + Quoted(name));
}

template <class Table>
void CheckNumber(int number, const Table& table, const std::string& name)
{
    if (static_cast<std::size_t>(number) >= table.size())
        throw ImportError("it animates " + name + "[" + std::to_string(number) + "], but the file has " +
                          std::to_string(table.size()) + " " + name);
}

ImportedTrack* TrackOf(ImportedFactor& factor, std::string_view property)
{
    if (property == "translation")
        return &factor.translation;
    if (property == "rotation")
        return &factor.rotation;
    return property == "scale" ? &factor.scale : nullptr;
}

} // namespace

GltfAnimations::GltfAnimations(const GltfDocument& gltfDocument, GltfAccessors& gltfAccessors,
                               const std::vector<Index>& nodes, const GltfMaterials& gltfMaterials,
                               ImportedScene& importedScene, ImportReport& importReport)
    : document(gltfDocument)
    , accessors(gltfAccessors)
    , importedNodes(nodes)
    , materials(gltfMaterials)
    , scene(importedScene)
    , report(importReport)
{}

void GltfAnimations::Convert()
{
    std::vector<std::string> names;
    for (const GltfDocument::Animation& animation : document.animations)
        names.push_back(animation.name);
    names = DistinctNames(std::move(names), "Animation");
    for (std::size_t i = 0; i < names.size(); ++i) {
        ImportedClip clip;
        clip.name = names[i];
        try {
            ConvertOne(document.animations[i], clip);
        } catch (const ImportError& error) {
            throw ImportError("animation " + Quoted(clip.name) + ": " + error.what());
        }
        AddClip(std::move(clip), scene, report);
    }
}

void GltfAnimations::ConvertOne(const GltfDocument::Animation& animation, ImportedClip& clip)
{
    nodeMotions.clear();
    materialMotions.clear();
    for (std::size_t i = 0; i < animation.channels.size(); ++i) {
        try {
            ConvertChannel(animation, animation.channels[i], clip);
        } catch (const ImportError& error) {
            throw ImportError("channel " + std::to_string(i) + ": " + error.what());
        }
    }
    CollectChannels(clip);
}

void GltfAnimations::ConvertChannel(const GltfDocument::Animation& animation, const Channel& channel,
                                    ImportedClip& clip)
{
    const Target target = TargetOf(channel);
    if (target.kind == Target::Kind::Unused)
        return;
    CheckNumber(channel.sampler, animation.samplers, "samplers");
    const GltfDocument::Animation::Sampler& sampler = animation.samplers[static_cast<std::size_t>(channel.sampler)];
    if (accessors.IsCompressed(sampler.input) || accessors.IsCompressed(sampler.output)) {
        report.CountLeftOut("compressed animation channel", "compressed animation channels");
        return;
    }
    ImportedTrack track = Track(sampler, target);
    if (!track.Moves()) {
        report.Warn("animation " + Quoted(clip.name) + ": the " + std::string(target.property) + " of " +
                    PlaceOf(target) + " has no keys and is left out");
        return;
    }
    clip.seconds = std::max(clip.seconds, track.times.back());
    if (target.kind == Target::Kind::Node)
        MoveNode(target, std::move(track));
    else
        MoveMaterial(target, std::move(track));
}

GltfAnimations::Target GltfAnimations::TargetOf(const Channel& channel)
{
    if (channel.path == "pointer") {
        if (const auto node = PathIn("/nodes/", channel.pointer))
            return NodeTarget(node->number, node->rest);
        if (const auto material = PathIn("/materials/", channel.pointer))
            return MaterialTarget(material->number, material->rest);
        report.CountLeftOut("animated property that cannot be shown", "animated properties that cannot be shown");
        return {};
    }
    // A channel without a node belongs to an extension.
    return channel.node < 0 ? Target() : NodeTarget(channel.node, channel.path);
}

GltfAnimations::Target GltfAnimations::NodeTarget(int node, std::string_view property)
{
    CheckNumber(node, document.model.nodes, "nodes");
    Target target{Target::Kind::Node, node, property, property == "rotation" ? 4 : 3};
    ImportedFactor anyFactor;
    if (property == "weights") {
        report.CountLeftOut("morph animation", "morph animations");
        target.kind = Target::Kind::Unused;
    } else if (!TrackOf(anyFactor, property)) {
        report.CountLeftOut("animated property that cannot be shown", "animated properties that cannot be shown");
        target.kind = Target::Kind::Unused;
    } else if (importedNodes[static_cast<std::size_t>(node)] == None) {
        report.CountLeftOut("animation of what is not shown", "animations of what is not shown");
        target.kind = Target::Kind::Unused;
    } else if (!document.model.nodes[static_cast<std::size_t>(node)].matrix.empty()) {
        report.Warn(PlaceOf(target) + " is placed by a matrix: its animation is left out");
        target.kind = Target::Kind::Unused;
    }
    return target;
}

GltfAnimations::Target GltfAnimations::MaterialTarget(int material, std::string_view property)
{
    CheckNumber(material, document.model.materials, "materials");
    const std::optional<int> width = MaterialPropertyWidth(property);
    if (!width) {
        report.CountLeftOut("animated property that cannot be shown", "animated properties that cannot be shown");
        return {};
    }
    if (materials.Converted(material) == None) {
        report.CountLeftOut("animation of what is not shown", "animations of what is not shown");
        return {};
    }
    return {Target::Kind::Material, material, property, *width};
}

ImportedTrack GltfAnimations::Track(const GltfDocument::Animation::Sampler& sampler, const Target& target)
{
    ImportedTrack track;
    track.interpolation = InterpolationOf(sampler.interpolation);
    if (accessors.Count(sampler.input) == 0)
        return track;
    const auto width = static_cast<std::size_t>(target.width);
    const std::size_t perKey = track.interpolation == Interpolation::CubicSpline ? 3 : 1;
    const std::size_t keys = accessors.Count(sampler.input);
    const std::size_t values = accessors.Count(sampler.output);
    if (values % perKey != 0 || values / perKey != keys)
        throw ImportError("it has " + std::to_string(values) + " values for " + std::to_string(keys) + " keys");
    track.times = accessors.Numbers(sampler.input, 1);
    track.values = accessors.Numbers(sampler.output, target.width);
    CheckTrack(track);
    if (target.kind == Target::Kind::Node && width == 4)
        MakeRotationsUnit(track);
    return track;
}

void GltfAnimations::MoveNode(const Target& target, ImportedTrack track)
{
    const auto place = nodeMotions.try_emplace(importedNodes[static_cast<std::size_t>(target.number)]);
    ImportedFactor& factor = place.first->second;
    if (place.second)
        factor.rest = LocalPose(document.model.nodes[static_cast<std::size_t>(target.number)]);
    ImportedTrack& own = *TrackOf(factor, target.property);
    if (own.Moves())
        report.Warn("the " + std::string(target.property) + " of " + PlaceOf(target) +
                    " is animated twice at once: the first animation counts");
    else
        own = std::move(track);
}

void GltfAnimations::MoveMaterial(const Target& target, ImportedTrack track)
{
    materialMotions[target.number].push_back({std::string(target.property), target.width, std::move(track)});
}

void GltfAnimations::CollectChannels(ImportedClip& clip)
{
    for (auto& [node, factor] : nodeMotions)
        clip.nodes.push_back({node, {std::move(factor)}});
    for (auto& [material, tracks] : materialMotions) {
        const Index index = materials.Converted(material);
        const auto looksAt = [source = document.model.materials[static_cast<std::size_t>(material)],
                              looks = scene.materials[static_cast<std::size_t>(index)],
                              moving = std::move(tracks)](double seconds) {
            tinygltf::Material changed = source;
            std::array<double, WidestProperty> values{};
            for (const PropertyTrack& property : moving) {
                const auto numbers = std::span(values).first(static_cast<std::size_t>(property.width));
                EvaluateTrack(property.track, seconds, numbers);
                SetMaterialProperty(changed, property.property, numbers);
            }
            ImportedMaterial result = looks;
            ConvertLooks(changed, result);
            return result;
        };
        clip.materials.push_back({index, looksAt});
    }
}

std::string GltfAnimations::PlaceOf(const Target& target) const
{
    const bool isNode = target.kind == Target::Kind::Node;
    const auto number = static_cast<std::size_t>(target.number);
    const std::string& name = isNode ? document.model.nodes[number].name : document.model.materials[number].name;
    return (isNode ? "node " : "material ") + (name.empty() ? std::to_string(number) : Quoted(name));
}

} // namespace Orvel::Import
