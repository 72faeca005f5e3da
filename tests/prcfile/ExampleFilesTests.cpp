#include "platform/prcfile/oPRCFile.h"
#include "tests/support/PRCDecoder.h"

#include <gtest/gtest.h>

#include <libdeflate.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <span>
#include <string>
#include <variant>
#include <vector>

/// Files known to be good are decoded, built again call by call, and compared bit by bit: whatever the two writers are
/// free to choose (ids, compression, how pictures are packed) lies outside the sections compared here.
namespace
{

using namespace Orvel::Test;

using Bytes = std::vector<std::uint8_t>;

std::uint32_t NumberAt(const Bytes& file, std::size_t offset)
{
    return static_cast<std::uint32_t>(file[offset] | file[offset + 1] << 8 | file[offset + 2] << 16) |
           static_cast<std::uint32_t>(file[offset + 3]) << 24;
}

/// The inflated bytes of section 1 (globals) to 5 of a file with one structure.
Bytes Section(const Bytes& file, std::size_t section)
{
    constexpr std::size_t offsets = 71;
    const std::size_t start = NumberAt(file, offsets + 4 * section);
    const std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)> decompressor(
        libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
    Bytes inflated(1 << 16);
    std::size_t consumed = 0;
    std::size_t size = 0;
    EXPECT_EQ(libdeflate_zlib_decompress_ex(decompressor.get(), file.data() + start, file.size() - start,
                                            inflated.data(), inflated.size(), &consumed, &size),
              LIBDEFLATE_SUCCESS);
    inflated.resize(size);
    return inflated;
}

Bytes ReadFile(const std::string& name)
{
    std::ifstream stream(std::filesystem::path(ORVEL_TEST_DATA) / "prc" / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Makes the calls that describe a decoded file.
class Replay
{
public:
    Replay(const PRCContent& original, Bytes& target)
        : content(original)
        , file(target, original.unitInMillimetres, 1)
    {}

    void Run()
    {
        for (const Style& style : content.styles)
            AddMaterial(style);
        for (const Tessellation& tessellation : content.tessellations)
            AddTessellation(tessellation);
        AddGroup(content.occurrences[content.root]);
        file.finish();
    }

private:
    static prc::PRCcolor Colour(const Vector3& rgb, double alpha) { return {rgb[0], rgb[1], rgb[2], alpha}; }

    void AddMaterial(const Style& style)
    {
        prc::PRCmaterial record;
        const auto* const texture = std::get_if<TextureApplication>(&content.materials[style.material]);
        const auto& material = std::get<Material>(content.materials[texture ? texture->material : style.material]);
        record.ambient = Colour(material.ambient, material.ambientAlpha);
        record.diffuse = Colour(material.diffuse, material.diffuseAlpha);
        record.emissive = Colour(material.emissive, material.emissiveAlpha);
        record.specular = Colour(material.specular, material.specularAlpha);
        record.alpha = style.transparency ? *style.transparency / 255.0 : 1.0;
        record.shininess = material.shininess;
        Bytes pixels;
        if (texture) {
            const TextureDefinition& definition = content.textureDefinitions[texture->textureDefinition];
            const Picture& picture = content.pictures[definition.picture];
            const std::size_t rowSize = picture.width * picture.components;
            for (std::size_t row = picture.height; row-- > 0;)
                pixels.insert(pixels.end(), picture.pixels.data() + row * rowSize,
                              picture.pixels.data() + (row + 1) * rowSize);
            record.pictureData = pixels.data();
            record.pictureFormat = static_cast<prc::PRCpictureFormat>(picture.components - 1);
            record.pictureWidth = picture.width;
            record.pictureHeight = picture.height;
            record.pictureSize = static_cast<std::uint32_t>(pixels.size());
            record.pictureReplace = definition.function == 2;
            record.pictureRepeat = definition.wrapS == 1;
        }
        file.addMaterial(record);
    }

    void AddTessellation(const Tessellation& tessellation)
    {
        auto record = std::make_unique<prc::PRC3DTess>();
        const auto append = [](std::vector<double>& flat, const auto& elements) {
            for (const auto& element : elements)
                flat.insert(flat.end(), element.begin(), element.end());
        };
        append(record->coordinates, tessellation.points);
        append(record->normalCoordinates, tessellation.normals);
        append(record->textureCoordinates, tessellation.textureCoordinates);
        record->triangulatedIndex = tessellation.indices;
        record->creaseAngle = tessellation.creaseAngleInDegrees;
        for (const Face& face : tessellation.faces) {
            auto* copy = new prc::PRCTessFace;
            copy->usedEntitiesFlag = face.textured ? 512 : 2;
            copy->numberOfTextureCoordinateIndexes = face.textured ? 1 : 0;
            copy->startTriangulated = static_cast<std::uint32_t>(face.firstIndex);
            copy->sizesTriangulated = {static_cast<std::uint32_t>(face.triangleCount)};
            if (face.style)
                copy->lineAttributes = {static_cast<std::uint32_t>(*face.style)};
            record->addTessFace(copy);
        }
        prc::PRC3DTess* handedOver = record.release();
        file.add3DTess(handedOver, 0);
    }

    void Place(const ProductOccurrence& occurrence, const double* matrix)
    {
        if (!occurrence.part)
            return;
        for (const RepresentationItem& item : content.parts[*occurrence.part].items)
            file.useMesh(static_cast<std::uint32_t>(item.tessellation.value()),
                         item.style ? static_cast<std::uint32_t>(*item.style) : prc::nullIndex, matrix);
    }

    void AddGroup(const ProductOccurrence& group)
    {
        file.begingroup(group.name ? group.name->c_str() : nullptr, nullptr,
                        group.location ? group.location->data() : nullptr);
        Place(group, nullptr);
        for (const std::size_t number : group.children) {
            const ProductOccurrence& child = content.occurrences[number];
            if (!child.name && child.location && child.children.empty())
                Place(child, child.location->data());
            else
                AddGroup(child);
        }
        file.endgroup();
    }

    const PRCContent& content;
    prc::oPRCFile file;
};

class ExampleFiles : public testing::TestWithParam<const char*>
{};

TEST_P(ExampleFiles, AreWrittenBitByBit)
{
    const Bytes original = ReadFile(GetParam());
    const PRCContent content = DecodePRC(original, Strictness::Format);
    Bytes copy;
    Replay(content, copy).Run();

    for (const std::size_t section : {1U, 2U, 3U, 4U, 5U})
        EXPECT_EQ(Section(copy, section), Section(original, section)) << "section " << section;
    const PRCContent decoded = DecodePRC(copy);
    EXPECT_EQ(decoded.modelName, content.modelName);
    EXPECT_EQ(decoded.unitInMillimetres, content.unitInMillimetres);
    EXPECT_EQ(decoded.pictures, content.pictures);
}

INSTANTIATE_TEST_SUITE_P(Known, ExampleFiles,
                         testing::Values("a_cube.prc", "b_groups.prc", "c_tex_rgb_png.prc", "c_tex_rgba_png.prc",
                                         "c_tex_no_normals.prc", "d_instances.prc", "e_empty_transparent.prc"),
                         [](const auto& example) {
                             const std::string file = example.param;
                             return file.substr(0, file.find('.'));
                         });

} // namespace
