#include "platform/prcfile/PRCPicture.h"
#include "platform/prcfile/PRCReader.h"
#include "platform/prcfile/PRCScene.h"
#include "platform/prcfile/oPRCFile.h"
#include "tests/prcfile/ExampleFile.h"
#include "tests/prcfile/FileSections.h"
#include "tests/support/PRCDecoder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <variant>
#include <vector>

/// Files known to be good are read, built again call by call from what was read, and compared bit by bit: a fault of
/// the reader or of the writer changes a bit. Whatever the two writers are free to choose (ids, compression, how
/// pictures are packed) lies outside the sections compared here.
namespace
{

namespace Model = prc::Model;
using namespace prc::Test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Makes the calls that describe a file.
class Replay
{
public:
    Replay(const Model::PRCModel& original, Bytes& target)
        : structure(original.structures.at(0))
        , file(target, original.unitInMillimetres, 1)
    {}

    void Run()
    {
        for (const Model::Style& style : structure.globals.styles)
            AddMaterial(style);
        for (const Model::Tessellation& tessellation : structure.tessellations)
            AddTessellation(tessellation);
        AddGroup(structure.occurrences.at(structure.root));
        file.finish();
    }

private:
    [[nodiscard]] prc::PRCcolor Colour(std::uint32_t number, double alpha) const
    {
        const Model::Colour& colour = structure.globals.colours.at(number);
        return {colour[0], colour[1], colour[2], alpha};
    }

    void AddMaterial(const Model::Style& style)
    {
        const Model::Globals& globals = structure.globals;
        const Model::MaterialEntry& entry = globals.materials.at(style.material);
        const auto* const texture = std::get_if<Model::TextureApplication>(&entry);
        const auto& material = std::get<Model::Material>(texture ? globals.materials.at(texture->material) : entry);
        prc::PRCmaterial record;
        record.ambient = Colour(material.ambient, material.ambientAlpha);
        record.diffuse = Colour(material.diffuse, material.diffuseAlpha);
        record.emissive = Colour(material.emissive, material.emissiveAlpha);
        record.specular = Colour(material.specular, material.specularAlpha);
        record.alpha = style.transparency ? *style.transparency / 255.0 : 1.0;
        record.shininess = material.shininess;
        Bytes bottomUp;
        if (texture)
            AddPicture(globals.textures.at(texture->texture), record, bottomUp);
        file.addMaterial(record);
    }

    void AddPicture(const Model::TextureDefinition& texture, prc::PRCmaterial& record, Bytes& bottomUp) const
    {
        const Model::DecodedPicture picture = Model::decodePicture(structure, texture.picture);
        const auto rowSize = static_cast<std::ptrdiff_t>(picture.size.width * picture.components);
        for (std::ptrdiff_t row = picture.size.height; row-- > 0;)
            bottomUp.insert(bottomUp.end(), picture.pixels.begin() + row * rowSize,
                            picture.pixels.begin() + (row + 1) * rowSize);
        record.pictureData = bottomUp.data();
        record.pictureFormat = static_cast<prc::PRCpictureFormat>(picture.components - 1);
        record.pictureWidth = picture.size.width;
        record.pictureHeight = picture.size.height;
        record.pictureSize = static_cast<std::uint32_t>(bottomUp.size());
        record.pictureReplace = texture.function == 2;
        record.pictureRepeat = texture.wrapS == 1;
    }

    void AddTessellation(const Model::Tessellation& tessellation)
    {
        auto record = std::make_unique<prc::PRC3DTess>();
        record->coordinates = tessellation.coordinates;
        record->normalCoordinates = tessellation.normalCoordinates;
        record->textureCoordinates = tessellation.textureCoordinates;
        record->triangulatedIndex = tessellation.triangulatedIndices;
        record->creaseAngle = tessellation.creaseAngleInDegrees;
        for (const Model::Face& face : tessellation.faces) {
            auto* copy = new prc::PRCTessFace;
            copy->usedEntitiesFlag = face.usedEntities;
            copy->numberOfTextureCoordinateIndexes = face.textureCoordinateIndices;
            copy->startTriangulated = face.startTriangulated;
            copy->sizesTriangulated = {face.triangleCount};
            copy->lineAttributes = face.styles;
            record->addTessFace(copy);
        }
        prc::PRC3DTess* handedOver = record.release();
        file.add3DTess(handedOver, 0);
    }

    void Place(const Model::ProductOccurrence& occurrence, const double* matrix)
    {
        if (occurrence.part == prc::nullIndex)
            return;
        for (const Model::RepresentationItem& item : structure.parts.at(occurrence.part).items)
            file.useMesh(item.tessellation, item.graphics.style, matrix);
    }

    void AddGroup(const Model::ProductOccurrence& group)
    {
        file.begingroup(group.name ? group.name->c_str() : nullptr, nullptr,
                        group.location ? group.location->data() : nullptr);
        Place(group, nullptr);
        for (const std::uint32_t number : group.children) {
            const Model::ProductOccurrence& child = structure.occurrences.at(number);
            if (!child.name && child.location && child.children.empty())
                Place(child, child.location->data());
            else
                AddGroup(child);
        }
        file.endgroup();
    }

    const Model::FileStructure& structure;
    prc::oPRCFile file;
};

class ExampleFiles : public testing::TestWithParam<const char*>
{};

TEST_P(ExampleFiles, AreReadAndWrittenBitByBit)
{
    const Bytes original = ExampleFile(GetParam());
    const Model::PRCModel model = prc::readPRC(original);
    EXPECT_THAT(model.findings, IsEmpty());
    EXPECT_EQ(model.minimalVersionForRead, 8016U);
    Bytes copy;
    Replay(model, copy).Run();

    const FileSections want = FileSections::Of(original);
    const FileSections got = FileSections::Of(copy);
    for (const std::size_t section : {0U, 1U, 2U, 3U, 4U})
        EXPECT_EQ(got.structures.at(0).sections[section], want.structures.at(0).sections[section]) << section;
    const Orvel::Test::PRCContent strict = Orvel::Test::DecodePRC(copy);
    EXPECT_EQ(strict.modelName, model.name);
    EXPECT_EQ(strict.unitInMillimetres, model.unitInMillimetres);
    EXPECT_EQ(strict.pictures, Orvel::Test::DecodePRC(original).pictures);
}

INSTANTIATE_TEST_SUITE_P(Known, ExampleFiles,
                         testing::Values("a_cube", "b_groups", "c_tex_rgb_png", "c_tex_rgba_png", "c_tex_no_normals",
                                         "d_instances", "e_empty_transparent"));

TEST(ForeignExamples, HaveFormsThatTheWriterHasNot)
{
    const Model::PRCModel set = prc::readPRCFile(ExamplePath("g_ri_set"));
    const std::vector<Model::RepresentationItem>& items = set.structures.at(0).parts.at(0).items;
    ASSERT_THAT(items, SizeIs(3));
    EXPECT_EQ(items[0].type, prc::EntityType::Set);
    EXPECT_EQ(items[2].name, "mesh 1");
    EXPECT_EQ(items[2].set, 0U);
    EXPECT_THAT(Model::placeScene(set).items, SizeIs(2));

    const Model::PRCModel shared = prc::readPRCFile(ExamplePath("d_shared_part"));
    std::vector<double> places;
    for (const Model::PlacedItem& item : Model::placeScene(shared).items)
        places.push_back(item.world[3]);
    EXPECT_THAT(places, ElementsAre(0, 20, 40));
    EXPECT_THAT(shared.structures[0].parts, SizeIs(1));

    for (const std::string form : {"c_tex_rgb_", "c_tex_rgba_"}) {
        const Model::PRCModel rows = prc::readPRCFile(ExamplePath(form + "raw"));
        const Model::PRCModel png = prc::readPRCFile(ExamplePath(form + "png"));
        EXPECT_THAT(rows.findings, IsEmpty());
        EXPECT_EQ(Model::decodePicture(rows.structures.at(0), 0).pixels,
                  Model::decodePicture(png.structures.at(0), 0).pixels);
        EXPECT_EQ(Model::sizeOf(png.structures[0], 0).width, 4U);
    }
}

TEST(ForeignExamples, AreMeasuredToTheLastByte)
{
    const Model::PRCModel model = prc::readPRCFile(ExamplePath("c_tex_rgba_raw"));
    std::uint64_t stored = model.headerBytes;
    for (const Model::SectionSummary& section : model.structures.at(0).sections) {
        EXPECT_EQ(section.offset, stored);
        EXPECT_GE(section.unpackedBytes, 3U);
        stored += section.storedBytes;
    }
    EXPECT_EQ(model.modelFile.offset, stored);
    EXPECT_EQ(stored + model.modelFile.storedBytes, model.fileSize);
}

} // namespace
