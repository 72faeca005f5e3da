#pragma once

#include "tool/import/GltfAccessors.h"
#include "tool/import/GltfDocument.h"
#include "tool/import/GltfMaterials.h"
#include "tool/import/ImportReport.h"
#include "tool/import/ImportedScene.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Orvel::Import
{

/// Brings the animations of a file into an imported scene: placements of nodes and, through KHR_animation_pointer,
/// values of materials. What else is animated is counted as left out.
class GltfAnimations
{
public:
    /// The arguments are not owned and must outlive the object.
    /// @param importedNodes the imported node of each node of the file; None for those outside the scene.
    /// @param materials     everything that the scene shows is converted already.
    GltfAnimations(const GltfDocument& document, GltfAccessors& accessors, const std::vector<Index>& importedNodes,
                   const GltfMaterials& materials, ImportedScene& scene, ImportReport& report);

    /// A channel without keys, or of something that the scene does not show, is passed over with a remark.
    ///
    /// @throws ImportError naming the animation, for keys out of order, numbers that are not finite, and values that
    ///         do not fit the keys.
    void Convert();

private:
    using Channel = GltfDocument::Animation::Channel;

    /// Where the value of a channel goes.
    struct Target
    {
        enum class Kind
        {
            Unused, ///< what is animated is not used, and was counted
            Node,
            Material
        };
        Kind kind = Kind::Unused;
        int number = -1; ///< of the node or material in the file
        std::string_view property;
        int width = 0;
    };
    struct PropertyTrack
    {
        std::string property;
        int width = 0;
        ImportedTrack track;
    };

    void ConvertOne(const GltfDocument::Animation& animation, ImportedClip& clip);
    void ConvertChannel(const GltfDocument::Animation& animation, const Channel& channel, ImportedClip& clip);
    Target TargetOf(const Channel& channel);
    Target NodeTarget(int node, std::string_view property);
    Target MaterialTarget(int material, std::string_view property);
    ImportedTrack Track(const GltfDocument::Animation::Sampler& sampler, const Target& target);
    void MoveNode(const Target& target, ImportedTrack track);
    void MoveMaterial(const Target& target, ImportedTrack track);
    void CollectChannels(ImportedClip& clip);
    [[nodiscard]] std::string PlaceOf(const Target& target) const;

    const GltfDocument& document;
    GltfAccessors& accessors;
    const std::vector<Index>& importedNodes;
    const GltfMaterials& materials;
    ImportedScene& scene;
    ImportReport& report;

    // of the animation at hand
    std::map<Index, ImportedFactor> nodeMotions;
    std::map<int, std::vector<PropertyTrack>> materialMotions; ///< by number in the file
};

} // namespace Orvel::Import
