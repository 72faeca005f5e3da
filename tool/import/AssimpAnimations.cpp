#include "tool/import/AssimpAnimations.h"

#include "tool/import/AddClip.h"
#include "tool/import/AssimpFrame.h"
#include "tool/import/AssimpText.h"
#include "tool/import/DistinctNames.h"
#include "tool/import/ImportedTrackChecks.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <utility>

namespace Orvel::Import
{

namespace
{

/// What Assimp's documentation takes when a file does not say.
constexpr double UsualTicksPerSecond = 25.0;

double TicksPerSecond(const aiAnimation& animation)
{
    const double ticks = animation.mTicksPerSecond;
    return std::isfinite(ticks) && ticks > 0.0 ? ticks : UsualTicksPerSecond;
}

std::array<double, 3> Numbers(const aiVector3D& v)
{
    return {static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z)};
}

Quaternion Numbers(const aiQuaternion& q)
{
    return {static_cast<double>(q.x), static_cast<double>(q.y), static_cast<double>(q.z), static_cast<double>(q.w)};
}

template <class Key>
ImportedTrack TrackFrom(std::span<const Key> keys, double ticksPerSecond)
{
    ImportedTrack track;
    track.times.reserve(keys.size());
    for (const Key& key : keys) {
        const auto numbers = Numbers(key.mValue);
        track.times.push_back(key.mTime / ticksPerSecond);
        track.values.insert(track.values.end(), numbers.begin(), numbers.end());
    }
    CheckTrack(track);
    return track;
}

ImportedFactor FactorFrom(const aiNode& node, const aiNodeAnim& channel, double ticksPerSecond)
{
    ImportedFactor factor;
    aiVector3D scale;
    aiQuaternion rotation;
    aiVector3D translation;
    node.mTransformation.Decompose(scale, rotation, translation);
    factor.rest = {Numbers(translation), UnitQuaternion(Numbers(rotation)), Numbers(scale)};
    factor.translation =
        TrackFrom(std::span<const aiVectorKey>(channel.mPositionKeys, channel.mNumPositionKeys), ticksPerSecond);
    factor.rotation =
        TrackFrom(std::span<const aiQuatKey>(channel.mRotationKeys, channel.mNumRotationKeys), ticksPerSecond);
    MakeRotationsUnit(factor.rotation);
    factor.scale =
        TrackFrom(std::span<const aiVectorKey>(channel.mScalingKeys, channel.mNumScalingKeys), ticksPerSecond);
    return factor;
}

double LastKey(const ImportedFactor& factor)
{
    double last = 0.0;
    for (const ImportedTrack* track : {&factor.translation, &factor.rotation, &factor.scale})
        if (track->Moves())
            last = std::max(last, track->times.back());
    return last;
}

/// Channels know their node by name only.
class ChannelsByNode
{
public:
    ChannelsByNode(const aiAnimation& animation, const aiNode& root, const std::string& clip, ImportReport& report)
    {
        std::multimap<std::string, const aiNodeAnim*> waiting;
        for (const aiNodeAnim* channel : std::span(animation.mChannels, animation.mNumChannels)) {
            if (channel->mNumPositionKeys + channel->mNumRotationKeys + channel->mNumScalingKeys > 0)
                waiting.emplace(channel->mNodeName.C_Str(), channel);
            else
                report.Warn("animation " + Quoted(clip) + ": node " + Quoted(Utf8From(channel->mNodeName)) +
                            " has no keys and is left out");
        }
        std::vector<const aiNode*> pending{&root};
        while (!pending.empty() && !waiting.empty()) {
            const aiNode* node = pending.back();
            pending.pop_back();
            if (const auto found = waiting.find(node->mName.C_Str()); found != waiting.end()) {
                channels.emplace(node, found->second);
                waiting.erase(found);
            }
            for (unsigned k = node->mNumChildren; k-- > 0;)
                pending.push_back(node->mChildren[k]);
        }
        report.CountLeftOut("animation of what is not shown", "animations of what is not shown", waiting.size());
    }

    [[nodiscard]] const aiNodeAnim* ChannelOf(const aiNode* node) const
    {
        const auto found = channels.find(node);
        return found == channels.end() ? nullptr : found->second;
    }

private:
    std::map<const aiNode*, const aiNodeAnim*> channels;
};

/// @return no factors when nothing moves.
std::vector<ImportedFactor> FactorsOf(const TransformSources& sources, const ChannelsByNode& channels,
                                      double ticksPerSecond)
{
    const auto channelOf = [&](const aiNode* node) { return channels.ChannelOf(node); };
    if (std::none_of(sources.begin(), sources.end(), channelOf))
        return {};
    std::vector<ImportedFactor> factors;
    for (const aiNode* source : sources) {
        if (const aiNodeAnim* const channel = channels.ChannelOf(source)) {
            factors.push_back(FactorFrom(*source, *channel, ticksPerSecond));
            continue;
        }
        if (factors.empty() || factors.back().Moves())
            factors.emplace_back();
        factors.back().fixed *= MatrixFrom(source->mTransformation);
    }
    return factors;
}

ImportedClip ClipFrom(const aiAnimation& animation, std::string name, const aiNode& root,
                      std::span<const TransformSources> sources, ImportReport& report)
{
    ImportedClip clip;
    clip.name = std::move(name);
    const double ticksPerSecond = TicksPerSecond(animation);
    const ChannelsByNode channels(animation, root, clip.name, report);
    for (std::size_t node = 0; node < sources.size(); ++node) {
        std::vector<ImportedFactor> factors;
        try {
            factors = FactorsOf(sources[node], channels, ticksPerSecond);
        } catch (const ImportError& error) {
            report.Warn("animation " + Quoted(clip.name) + ": node " + Quoted(Utf8From(sources[node].back()->mName)) +
                        " is left out: " + error.what());
        }
        for (const ImportedFactor& factor : factors)
            clip.seconds = std::max(clip.seconds, LastKey(factor));
        if (!factors.empty())
            clip.nodes.push_back({static_cast<Index>(node), std::move(factors)});
    }
    report.CountLeftOut("morph animation", "morph animations", animation.mNumMorphMeshChannels);
    report.CountLeftOut("vertex animation", "vertex animations", animation.mNumMeshChannels);
    return clip;
}

} // namespace

void TakeAnimations(const aiScene& scene, std::span<const TransformSources> sources, ImportedScene& imported,
                    ImportReport& report)
{
    const std::span<aiAnimation* const> animations(scene.mAnimations, scene.mNumAnimations);
    std::vector<std::string> names;
    for (const aiAnimation* animation : animations)
        names.push_back(Utf8From(animation->mName));
    names = DistinctNames(std::move(names), "Animation");
    for (std::size_t i = 0; i < names.size(); ++i)
        AddClip(ClipFrom(*animations[i], names[i], *scene.mRootNode, sources, report), imported, report);
}

} // namespace Orvel::Import
