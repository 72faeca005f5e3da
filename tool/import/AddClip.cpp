#include "tool/import/AddClip.h"

#include <utility>

namespace Orvel::Import
{

void AddClip(ImportedClip clip, ImportedScene& scene, ImportReport& report)
{
    if (clip.nodes.empty() && clip.materials.empty())
        report.Warn("animation " + Quoted(clip.name) + " changes nothing that can be shown: it is left out");
    else
        scene.clips.push_back(std::move(clip));
}

} // namespace Orvel::Import
