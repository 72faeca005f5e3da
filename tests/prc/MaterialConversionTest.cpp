#include "prc/MaterialConversion.h"

#include "mapping/COrvelPRCMapper.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelBasicSceneState.h"
#include "platform/core/COrvelColor.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelMaterial.h"
#include "tests/prc/PRCRun.h"

#include <gtest/gtest.h>

namespace Orvel::Test
{
namespace
{

COrvelBasicGeneralMaterial Looks()
{
    COrvelBasicGeneralMaterial looks;
    looks.SetAmbientColor(COrvelColor(0.1, 0.2, 0.3, 0.9));
    looks.SetDiffuseColor(COrvelColor(0.4, 0.5, 0.6, 0.8));
    looks.SetEmissiveColor(COrvelColor(0.7, 0.75, 0.85, 0.7));
    looks.SetSpecularColor(COrvelColor(0.15, 0.25, 0.95, 0.6));
    return looks;
}

void ExpectColor(const prc::PRCcolor& color, double red, double green, double blue, double alpha)
{
    EXPECT_EQ(color.red, red);
    EXPECT_EQ(color.green, green);
    EXPECT_EQ(color.blue, blue);
    EXPECT_EQ(color.alpha, alpha);
}

/// The record of a mesh in these looks, without texture coordinates.
prc::PRCmaterial MeshRecord(COrvelDocument& document, const COrvelBasicMaterial& looks)
{
    COrvel3DObject* const object =
        COrvel3DObject::Create(&document, "", nullptr, COrvelMaterial::Create(&document, looks));
    MaterialRecord material;
    uint32 count = 0;
    const double* coordinates = nullptr;
    const uint32* indices = nullptr;
    MakeMeshMaterial(*COrvelPRCHandler::Instance(), material, object, count, coordinates, indices);
    return material.record;
}

TEST(MaterialRecords, CopyColoursUnclampedAndLowerTheAmbientAlphaMoreWithEveryMesh)
{
    COrvelDocument document;
    COrvelBasicGeneralMaterial looks = Looks();
    looks.SetSpecularColor(COrvelColor(1.5, -0.25, 0.95, 0.6));
    double offset = 0.0;
    for (int k = 1; k <= 3; ++k) {
        offset += 0.01;
        const prc::PRCmaterial record = MeshRecord(document, looks);
        ExpectColor(record.ambient, 0.1, 0.2, 0.3, 0.9 - offset);
        ExpectColor(record.diffuse, 0.4, 0.5, 0.6, 0.8);
        ExpectColor(record.emissive, 0.7, 0.75, 0.85, 0.7);
        ExpectColor(record.specular, 1.5, -0.25, 0.95, 0.6);
        EXPECT_EQ(record.shininess, 0.5);
        EXPECT_EQ(record.pictureData, nullptr);
        EXPECT_EQ(record.pictureFormat, prc::PRCpictureFormat::Rgb);
        EXPECT_EQ(record.pictureSize, 0U);
        EXPECT_FALSE(record.pictureReplace);
        EXPECT_FALSE(record.pictureRepeat);
    }
}

TEST(MaterialRecords, TakeTheOpacityOnlyWhereThereIsOne)
{
    COrvelDocument document;
    COrvelBasicGeneralMaterial looks = Looks();
    looks.SetOpacity(0.375);
    EXPECT_EQ(MeshRecord(document, looks).alpha, 0.375);
    looks.RemoveOpacity();
    EXPECT_EQ(MeshRecord(document, looks).alpha, 1.0);
}

TEST(MaterialRecords, OfKeyFramesAndReplacementsLowerTheirOwnAlpha)
{
    COrvelBasicGeneralMaterial looks = Looks();
    MaterialRecord replacement;
    MakeReplacementMaterial(*COrvelPRCHandler::Instance(), replacement, &looks);
    ExpectColor(replacement.record.diffuse, 0.4, 0.5, 0.6, 0.8 - 0.0001);
    ExpectColor(replacement.record.ambient, 0.1, 0.2, 0.3, 0.9);

    PRCRun run;
    uint32 index = 99;
    EXPECT_TRUE(run.converter.AddKeyFrameMaterial(&looks, index, run.file));
    EXPECT_EQ(index, 0U);
    EXPECT_TRUE(run.converter.AddKeyFrameMaterial(&looks, index, run.file));
    EXPECT_EQ(index, 1U) << "equal records are two materials";
    const PRCContent content = run.Finish();
    const auto& material = std::get<Material>(content.materials.at(content.styles.at(1).material));
    EXPECT_EQ(material.emissiveAlpha, 0.7 - 0.0001);
    EXPECT_EQ(material.diffuseAlpha, 0.8);
}

TEST(SceneStateMaterials, RecordWhatStandsForWhatInEachState)
{
    COrvelDocument document;
    document.ReserveMaterials(3);
    COrvelMaterial* const shown = COrvelMaterial::Create(&document, "shown");
    COrvelMaterial* const unseen = COrvelMaterial::Create(&document, "unseen");
    COrvelMaterial* const unseenToo = COrvelMaterial::Create(&document, "unseen too");
    COrvelBasicGeneralMaterial looks = Looks();

    PRCRun run;
    run.converter.materialNumbers->emplace(shown, 3);
    std::vector<COrvelBasicSceneState> states(3);
    states[0].materialReplacements = {{shown, &looks}};
    states[2].materialReplacements = {{shown, &looks}, {unseen, &looks}, {unseenToo, &looks}};
    run.converter.ExtractSceneStateMaterials(run.file, nullptr);
    EXPECT_TRUE(run.converter.mapper->sceneStateMaterials.empty());
    run.converter.ExtractSceneStateMaterials(run.file, &states);

    using Maps = std::map<int, std::map<int, int>>;
    EXPECT_EQ(run.converter.mapper->sceneStateMaterials, (Maps{{0, {{3, 1}}}, {1, {}}, {2, {{0, 4}, {3, 2}}}}));
    EXPECT_EQ(run.converter.materialNumbers->at(unseen), 0U);
    EXPECT_EQ(run.converter.materialNumbers->at(unseenToo), 0U);
    EXPECT_EQ(run.Finish().styles.size(), 4U);
}

} // namespace
} // namespace Orvel::Test
