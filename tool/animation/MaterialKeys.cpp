#include "tool/animation/MaterialKeys.h"

#include "animation/COrvelKeyFrameDataMaterial.h"
#include "animation/COrvelKeyFrameManager.h"
#include "animation/MotionProfiles.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelMaterial.h"
#include "tool/animation/StoreKeyFrameData.h"
#include "tool/import/DocumentMaterials.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <utility>

namespace Orvel::Animate
{

namespace
{

/// Everything of the looks that changes gradually: four colours and the opacity.
using Channels = std::array<double, 13>;

Channels ChannelsOf(const Import::ImportedMaterial& looks)
{
    Channels channels{};
    auto place = channels.begin();
    for (const auto& colour : {looks.ambient, looks.diffuse, looks.specular, looks.emissive})
        place = std::copy(colour.begin(), colour.end(), place);
    *place = looks.opacity;
    return channels;
}

Channels ChannelsOf(const COrvelBasicGeneralMaterial& looks)
{
    Channels channels{};
    auto place = channels.begin();
    for (const COrvelColor& colour :
         {looks.AmbientColor(), looks.DiffuseColor(), looks.SpecularColor(), looks.EmissiveColor()})
        for (const double channel : {colour.R(), colour.G(), colour.B()})
            *place++ = channel;
    *place = looks.Opacity();
    return channels;
}

bool AreNear(const Channels& a, const Channels& b, double tolerance)
{
    return std::equal(a.begin(), a.end(), b.begin(),
                      [tolerance](double left, double right) { return std::abs(left - right) <= tolerance; });
}

} // namespace

MaterialKeys ReduceMaterial(std::vector<COrvelMaterial*> materials,
                            const std::vector<Import::ImportedMaterial>& samples, double tolerance)
{
    std::vector<Channels> channels;
    channels.reserve(samples.size());
    for (const Import::ImportedMaterial& sample : samples)
        channels.push_back(ChannelsOf(sample));
    MaterialKeys keys;
    const Channels rest = ChannelsOf(*materials.front()->ApproximateToOrvelGeneralMaterial());
    keys.materials = std::move(materials);
    if (std::all_of(channels.begin(), channels.end(), [&](const Channels& c) { return AreNear(rest, c, tolerance); }))
        return keys;

    const auto at = [&channels](int frame) -> const Channels& { return channels[static_cast<std::size_t>(frame)]; };
    SampledMotion motion;
    motion.lastFrame = static_cast<int>(samples.size()) - 1;
    motion.isSame = [&](int frame, int other) { return AreNear(at(frame), at(other), SameState * tolerance); };
    motion.isNearBlend = [&](int first, int second, int from, int to, int frame) {
        Channels blend{};
        for (std::size_t i = 0; i < blend.size(); ++i)
            blend[i] = Lerp(at(first)[i], at(second)[i], frame, from, to);
        return AreNear(blend, at(frame), tolerance);
    };
    keys.ranges = ReduceKeys(motion);
    for (const KeyRange& range : keys.ranges)
        keys.looks.push_back(samples[static_cast<std::size_t>(range.start)]);
    return keys;
}

void StoreKeys(const MaterialKeys& keys, COrvelKeyFrameManager& manager)
{
    for (const COrvelMaterial* material : keys.materials) {
        const std::unique_ptr<COrvelBasicMaterial> atRest(material->ApproximateToOrvelGeneralMaterial()->Clone());
        COrvelBasicGeneralMaterial& looks = *atRest->ApproximateToGeneralMaterial();
        for (std::size_t i = 0; i < keys.ranges.size(); ++i) {
            Import::GiveColours(looks, keys.looks[i]);
            StoreKeyFrameData(
                COrvelKeyFrameDataMaterial::CreateMaterialKeyFrameData(material->ID(), &looks, material->ID()),
                keys.ranges[i], manager);
        }
    }
}

} // namespace Orvel::Animate
