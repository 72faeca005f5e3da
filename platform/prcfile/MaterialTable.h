#pragma once

#include "platform/prcfile/PRCmaterial.h"
#include "platform/prcfile/PictureStore.h"
#include "platform/prcfile/SectionWriter.h"

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace prc
{

/// The materials of a file, with the colours and pictures that they share, and the section that holds them: the
/// globals.
///
/// Every material has a style of its own with the same number, so that equal materials stay distinguishable.
class MaterialTable
{
public:
    /// @throws std::invalid_argument, see oPRCFile::addMaterial.
    std::uint32_t add(const PRCmaterial& material);

    /// Number of materials so far.
    [[nodiscard]] std::uint32_t size() const { return static_cast<std::uint32_t>(materials.size()); }

    /// Number of styles that may be named: style 0 exists even without materials.
    [[nodiscard]] std::uint32_t styleCount() const { return materials.empty() ? 1 : size(); }

    [[nodiscard]] PictureStore& pictures() { return pictureStore; }
    [[nodiscard]] const PictureStore& pictures() const { return pictureStore; }

    /// Writes the globals. A table without materials gets one first: a file without a style shows nothing.
    void write(SectionWriter& section, IdentifierCounter& identifiers);

private:
    struct Texture
    {
        std::uint32_t picture;
        bool replace;
        bool repeat;
    };

    struct Material
    {
        std::array<std::uint32_t, 4> colours; ///< ambient, diffuse, emissive, specular.
        std::array<double, 4> alphas;         ///< the same, 0 to 1.
        double shininess;
        double alpha; ///< 0 to 1.
        std::optional<Texture> texture;
    };

    using Rgb = std::array<double, 3>;

    std::uint32_t addColour(const PRCcolor& colour);
    void writeColours(SectionWriter& section) const;
    void writePictures(SectionWriter& section) const;
    void writeTextureDefinitions(SectionWriter& section, IdentifierCounter& identifiers) const;
    void writeMaterials(SectionWriter& section, IdentifierCounter& identifiers) const;
    void writeStyles(SectionWriter& section, IdentifierCounter& identifiers) const;
    [[nodiscard]] std::uint32_t textureCount() const;

    std::vector<Material> materials;
    std::vector<Rgb> colours;
    std::map<Rgb, std::uint32_t> numberByColour;
    PictureStore pictureStore;
};

} // namespace prc
