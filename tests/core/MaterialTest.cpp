#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelArchiveReader.h"
#include "platform/core/COrvelArchiveWriter.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelBasicMetallicMaterial.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelMaterial.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <set>

namespace Orvel
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

using MaterialOwner = std::unique_ptr<COrvelBasicMaterial>;

COrvelBasicGeneralMaterial Steel()
{
    COrvelBasicGeneralMaterial steel;
    steel.SetName("steel");
    steel.SetAmbientColor({0.1, 0.2, 0.3, 0.4});
    steel.SetDiffuseColor({0.5, 0.6, 0.7, 0.8});
    steel.SetEmissiveColor({0.9, 1.1, 1.2, 1.3});
    steel.SetSpecularColor({1.4, 1.5, 1.6, 1.7});
    steel.SetTexture(enumTextureType(1), COrvelTexture("größe/steel.png"));
    return steel;
}

COrvelBasicMetallicMaterial Gold()
{
    COrvelBasicMetallicMaterial gold;
    gold.SetName("gold");
    gold.SetBaseColor({0.8, 0.6, 0.2, 0.5});
    gold.SetEmissiveColor({0.25, 0.125, 0.0625, 1.0});
    gold.SetMetalness(0.75);
    gold.SetRoughness(0.5);
    gold.SetTexture(enumTextureType(1), COrvelTexture("gold.png"));
    return gold;
}

COrvelBasicGeneralMaterial& General(const MaterialOwner& material)
{
    return *material->ApproximateToGeneralMaterial();
}

void ExpectColor(const COrvelColor& got, const COrvelColor& want)
{
    EXPECT_DOUBLE_EQ(got.R(), want.R());
    EXPECT_DOUBLE_EQ(got.G(), want.G());
    EXPECT_DOUBLE_EQ(got.B(), want.B());
    EXPECT_DOUBLE_EQ(got.A(), want.A());
}

TEST(BasicMaterial, AnswersAnEmptyTextureWithoutEnteringOne)
{
    COrvelBasicGeneralMaterial material;
    material.SetTexture(enumTextureType(2), COrvelTexture("bump.png"));
    for (int time = 0; time < 2; ++time)
        EXPECT_TRUE(material.Texture(enumTextureType(1), false).IsEmpty());
    EXPECT_EQ(material.Texture(enumTextureType(2), false).FullFilename(false), "bump.png");
    material.SetTexture(enumTextureType(2), COrvelTexture());
    EXPECT_TRUE(material.Texture(enumTextureType(2), false).IsEmpty());
    EXPECT_NE(&material.Texture(enumTextureType(3), true), &material.Texture(enumTextureType(4), false))
        << "an entry of its own";
}

TEST(BasicMaterial, MetallicLooksBecomeGeneralOnes)
{
    COrvelBasicMetallicMaterial gold = Gold();
    COrvelBasicGeneralMaterial* const general = gold.ApproximateToGeneralMaterial();
    EXPECT_EQ(general->Name(), "gold");
    ExpectColor(general->DiffuseColor(), {0.2, 0.15, 0.05, 1.0});
    ExpectColor(general->AmbientColor(), {0.05, 0.0375, 0.0125, 1.0});
    ExpectColor(general->EmissiveColor(), {0.25, 0.125, 0.0625, 1.0});
    // (0.25 x 0.04 + 0.75 x channel) x 0.5
    ExpectColor(general->SpecularColor(), {0.305, 0.23, 0.08, 1.0});
    EXPECT_TRUE(general->HasOpacity());
    EXPECT_EQ(general->Opacity(), 0.5);
    EXPECT_EQ(general->Texture(enumTextureType(1), false).Filename(), "gold.png");

    gold.SetBaseColor({0.0, 0.0, 0.0, 1.0});
    EXPECT_EQ(gold.ApproximateToGeneralMaterial(), general) << "stays with its material";
    EXPECT_FALSE(general->HasOpacity());
    ExpectColor(general->DiffuseColor(), {0.0, 0.0, 0.0, 1.0});
}

TEST(MaterialBlend, IsLinearAndTakesTheNameOfTheNearerEnd)
{
    const COrvelBasicGeneralMaterial from = Steel();
    COrvelBasicGeneralMaterial to;
    to.SetName("glass");
    to.SetDiffuseColor({0.9, 0.2, 0.3, 0.0});
    to.SetOpacity(0.5);

    const auto at = [&from, &to](double t) { return MaterialOwner(COrvelBasicMaterial::Interpolate(&from, &to, t)); };
    const MaterialOwner quarter = at(0.25);
    EXPECT_EQ(quarter->Name(), "steel");
    ExpectColor(General(quarter).DiffuseColor(), {0.6, 0.5, 0.6, 0.6});
    EXPECT_DOUBLE_EQ(General(quarter).Opacity(), 0.875) << "an opaque end counts as 1";
    EXPECT_EQ(General(quarter).Texture(enumTextureType(1), false).Filename(), "größe/steel.png");

    const MaterialOwner half = at(0.5);
    EXPECT_EQ(half->Name(), "glass");
    EXPECT_TRUE(General(half).Texture(enumTextureType(1), false).IsEmpty());

    EXPECT_EQ(General(at(0.0)).DiffuseColor(), from.DiffuseColor());
    EXPECT_EQ(General(at(1.0)).DiffuseColor(), to.DiffuseColor());
    EXPECT_EQ(from.Name(), "steel");
    EXPECT_FALSE(from.HasOpacity());
    EXPECT_EQ(half->ReferenceCount(), 0);
    EXPECT_EQ(COrvelBasicMaterial::Interpolate(nullptr, &to, 0.5), nullptr);
    EXPECT_EQ(COrvelBasicMaterial::Interpolate(&from, nullptr, 0.5), nullptr);
}

TEST(MaterialBlend, StaysWithinAKindAndMeetsInGeneralLooksBetweenKinds)
{
    COrvelBasicMetallicMaterial from = Gold();
    COrvelBasicMetallicMaterial matt = Gold();
    matt.SetRoughness(1.0);
    const MaterialOwner same(COrvelBasicMaterial::Interpolate(&from, &matt, 0.5));
    ASSERT_EQ(same->KindName(), from.KindName());
    EXPECT_DOUBLE_EQ(dynamic_cast<COrvelBasicMetallicMaterial&>(*same).Roughness(), 0.75);

    const COrvelBasicGeneralMaterial to = Steel();
    const MaterialOwner mixed(COrvelBasicMaterial::Interpolate(&from, &to, 0.25));
    EXPECT_EQ(mixed->KindName(), to.KindName());
    EXPECT_EQ(mixed->Name(), "gold");
    ExpectColor(General(mixed).DiffuseColor(), {0.275, 0.2625, 0.2125, 0.95});
}

TEST(MaterialArchive, KeepsEveryKind)
{
    const COrvelBasicGeneralMaterial steel = Steel();
    const COrvelBasicMetallicMaterial gold = Gold();
    for (const COrvelBasicMaterial* const original : std::initializer_list<const COrvelBasicMaterial*>{&steel, &gold}) {
        const MaterialOwner written(original->Clone());
        COrvelArchiveWriter writer;
        ASSERT_TRUE(written->ArchiveReadWrite(writer));
        COrvelArchiveReader archive(writer.Bytes());
        const MaterialOwner read(COrvelBasicMaterial::CreateBasicMaterial(original->KindName()));
        ASSERT_TRUE(read && read->ArchiveReadWrite(archive) && archive.IsAtEnd());
        EXPECT_EQ(read->Name(), original->Name());
        EXPECT_EQ(General(read).SpecularColor(), General(written).SpecularColor());
        EXPECT_EQ(General(read).EmissiveColor(), General(written).EmissiveColor());
        EXPECT_EQ(General(read).Opacity(), General(written).Opacity());
        EXPECT_EQ(General(read).Texture(enumTextureType(1), false),
                  General(written).Texture(enumTextureType(1), false));
    }
    EXPECT_EQ(COrvelBasicMaterial::CreateBasicMaterial("no such kind"), nullptr);
}

TEST(MaterialArchive, ReadsAnUnknownKindByItsDescription)
{
    COrvelBasicMetallicMaterial gold = Gold();
    COrvelArchiveWriter writer;
    COrvelStructureDescription written = gold.StructureDescription();
    ASSERT_TRUE(writer.ReadWrite(written) && gold.ArchiveReadWrite(writer));
    const std::span<const std::uint8_t> bytes = writer.Bytes();

    COrvelArchiveReader archive(bytes);
    COrvelStructureDescription description;
    COrvelBasicGeneralMaterial general;
    const COrvelColor untouched = general.DiffuseColor();
    ASSERT_TRUE(archive.ReadWrite(description) && general.ReadDescribed(archive, description));
    EXPECT_TRUE(archive.IsAtEnd());
    EXPECT_EQ(general.Name(), "gold");
    EXPECT_EQ(general.EmissiveColor(), gold.EmissiveColor()) << "a field of both kinds";
    EXPECT_EQ(general.Texture(enumTextureType(1), false).Filename(), "gold.png");
    EXPECT_EQ(general.DiffuseColor(), untouched);

    for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
        COrvelArchiveReader truncated(bytes.first(cut));
        COrvelStructureDescription read;
        EXPECT_FALSE(truncated.ReadWrite(read) && general.ReadDescribed(truncated, read)) << cut;
    }
}

TEST(MaterialAddresses, RiseInCreationOrderAsFarAsRoomWasReservedAndAreNeverUsedAgain)
{
    COrvelDocument document;
    document.ReserveMaterials(1000);
    std::vector<COrvelMaterial*> materials;
    for (std::size_t k = 0; k < 1000; ++k)
        materials.push_back(COrvelMaterial::Create(&document));
    EXPECT_TRUE(std::is_sorted(materials.begin(), materials.end(), std::less<>()));
    std::vector<COrvelMaterial*> listed{nullptr};
    document.ListMaterials(listed);
    EXPECT_EQ(listed, materials);

    std::set<const void*> seen(materials.begin(), materials.end());
    for (int k = 0; k < 300; ++k) {
        COrvelMaterial* const material = COrvelMaterial::Create(&document);
        EXPECT_TRUE(seen.insert(material).second);
        document.Destroy(material);
    }
}

class MaterialUse : public testing::Test
{
protected:
    std::vector<COrvel3DObject*> UsersOf(const COrvelMaterial* material)
    {
        material->GetObjectsReferencingThisMaterial(listed);
        return listed;
    }

    COrvelDocument document;
    COrvelMaterial* const steel = COrvelMaterial::Create(&document, Steel());
    COrvelMaterial* const gold = COrvelMaterial::Create(&document, Gold());
    COrvel3DObject* const first = COrvel3DObject::Create(&document, "first", nullptr, steel);
    COrvel3DObject* const second = COrvel3DObject::Create(&document, "second", nullptr, steel);
    COrvel3DObject* const plain = COrvel3DObject::Create(&document, "plain");
    std::vector<COrvel3DObject*> listed{nullptr};
};

TEST_F(MaterialUse, ReplacementTakesEveryObjectAlong)
{
    second->SetDeleted(true);
    first->Hide();
    steel->ReplaceWith(steel);
    steel->ReplaceWith(nullptr);
    EXPECT_THAT(UsersOf(steel), ElementsAre(first, second));

    steel->ReplaceWith(gold);
    EXPECT_THAT(UsersOf(steel), IsEmpty());
    EXPECT_THAT(UsersOf(gold), ElementsAre(first, second));
    EXPECT_EQ(first->Material(), gold);
}

TEST_F(MaterialUse, ObjectsWithoutMaterialShowTheDefaultOne)
{
    EXPECT_TRUE(first->HasOwnMaterial());
    EXPECT_FALSE(plain->HasOwnMaterial());
    COrvelMaterial* const shown = plain->Material();
    EXPECT_EQ(shown, document.DefaultMaterial());
    EXPECT_TRUE(shown->IsDefault());
    EXPECT_FALSE(steel->IsDefault());
    EXPECT_THAT(UsersOf(shown), ElementsAre(plain));
    shown->ReplaceWith(gold);
    EXPECT_EQ(plain->Material(), gold);
}

TEST_F(MaterialUse, LoadingCopiesTheLooksOnly)
{
    {
        const COrvelBasicGeneralMaterial looks = Steel();
        gold->LoadBasicMaterial(&looks, false);
    }
    EXPECT_EQ(gold->Name(), "gold");
    EXPECT_EQ(gold->BasicMaterial()->Name(), "steel");
    gold->LoadBasicMaterial(gold->BasicMaterial(), true);
    gold->LoadBasicMaterial(nullptr, true);
    EXPECT_EQ(gold->Name(), "steel");
    EXPECT_EQ(gold->ApproximateToOrvelGeneralMaterial()->DiffuseColor(), Steel().DiffuseColor());
}

} // namespace
} // namespace Orvel
