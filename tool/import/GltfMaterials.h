#pragma once

#include "tool/import/GltfBuffers.h"
#include "tool/import/GltfDocument.h"
#include "tool/import/ImportReport.h"
#include "tool/import/ImportedScene.h"

#include <cstddef>
#include <filesystem>
#include <vector>

namespace Orvel::Import
{

/// Sets the colours and the opacity of a material, without its picture, which `material` must have already.
void ConvertLooks(const tinygltf::Material& source, ImportedMaterial& material);

/// Brings the materials that are in use, with their pictures, into a scene's tables.
class GltfMaterials
{
public:
    /// The arguments are not owned and must outlive the object.
    GltfMaterials(const GltfDocument& document, GltfBuffers& buffers, std::filesystem::path folder,
                  ImportedScene& scene, ImportReport& report);

    /// @param material of the file; -1 gives None.
    /// @return index into the scene's materials, the same at each call.
    /// @throws ImportError when the bytes of an embedded picture lie outside their buffer.
    [[nodiscard]] Index Convert(int material);

    /// @param material of the file, 0 or more.
    /// @return what Convert() gave for it; None when it was not asked for.
    [[nodiscard]] Index Converted(int material) const { return converted.at(static_cast<std::size_t>(material)); }

    /// Whether a material of the file names a picture; -1 has none.
    [[nodiscard]] bool HasPicture(int material) const;

    /// The set of texture coordinates that the picture of a material asks for: the n of TEXCOORD_n.
    /// @param material of the file; -1, and a material without a picture, give 0.
    [[nodiscard]] int CoordinateSet(int material) const;

private:
    ImportedMaterial Make(const tinygltf::Material& source);
    void CountUnreadTextures(const tinygltf::Material& source);
    Index Picture(int texture);
    Index ConvertImage(int image);

    const GltfDocument& document;
    GltfBuffers& buffers;
    std::filesystem::path folder;
    ImportedScene& scene;
    ImportReport& report;
    std::vector<Index> converted;
    std::vector<Index> convertedImages;
};

} // namespace Orvel::Import
