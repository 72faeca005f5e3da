#include "tool/import/GltfVariants.h"

#include "tool/import/ImportReport.h"

#include <string>

namespace Orvel::Import
{

std::vector<int> MaterialsOfVariants(const tinygltf::Primitive& primitive, std::size_t variantCount)
{
    const auto extension = primitive.extensions.find("KHR_materials_variants");
    if (extension == primitive.extensions.end())
        return {};
    std::vector<int> materials(variantCount, -1);
    const tinygltf::Value& mappings = extension->second.Get("mappings");
    for (int i = 0; i < static_cast<int>(mappings.ArrayLen()); ++i) {
        // The shape of mappings, and their materials, were checked with that of the document.
        const tinygltf::Value& mapping = mappings.Get(i);
        const tinygltf::Value& variants = mapping.Get("variants");
        for (int k = 0; k < static_cast<int>(variants.ArrayLen()); ++k) {
            const tinygltf::Value& variant = variants.Get(k);
            if (!variant.IsInt() || variant.GetNumberAsInt() < 0 ||
                static_cast<std::size_t>(variant.GetNumberAsInt()) >= variantCount)
                throw ImportError("a primitive names a variant of materials that does not exist");
            materials[static_cast<std::size_t>(variant.GetNumberAsInt())] = mapping.Get("material").GetNumberAsInt();
        }
    }
    return materials;
}

} // namespace Orvel::Import
