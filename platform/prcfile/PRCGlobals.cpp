#include "platform/prcfile/PRCGlobals.h"

namespace prc::Model
{

namespace
{

template <typename Entry>
const Entry* entryAt(const std::vector<Entry>& table, std::uint32_t index)
{
    return index < table.size() ? &table[index] : nullptr;
}

} // namespace

Appearance appearanceOf(const Globals& globals, std::uint32_t style)
{
    Appearance appearance;
    const Style* const found = entryAt(globals.styles, style);
    if (found == nullptr)
        return appearance;
    appearance.colour = entryAt(globals.colours, found->colour);
    const MaterialEntry* entry = entryAt(globals.materials, found->material);
    if (entry != nullptr) {
        if (const auto* const application = std::get_if<TextureApplication>(entry)) {
            appearance.texture = entryAt(globals.textures, application->texture);
            entry = entryAt(globals.materials, application->material);
        }
        appearance.material = entry != nullptr ? std::get_if<Material>(entry) : nullptr;
    }
    if (appearance.material != nullptr) {
        appearance.colour = entryAt(globals.colours, appearance.material->diffuse);
        // Some producers store 0 for opaque.
        if (appearance.material->diffuseAlpha > 0.0)
            appearance.alpha = appearance.material->diffuseAlpha;
    }
    if (found->transparency)
        appearance.alpha = *found->transparency / 255.0;
    return appearance;
}

} // namespace prc::Model
