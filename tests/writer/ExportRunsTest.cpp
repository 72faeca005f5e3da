#include "mapping/COrvelPRCMapper.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelBasicSceneState.h"
#include "platform/core/COrvelColor.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelMaterial.h"
#include "prc/COrvelPRCHandler.h"
#include "prc/ExportCaches.h"
#include "support/PRCPlacement.h"
#include "support/TemporaryFolder.h"
#include "writer/COrvelPRCWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Orvel::Test
{
namespace
{

class ExportRuns : public testing::Test
{
protected:
    COrvelSceneNode* Root(const char* name)
    {
        COrvelSceneNode* const root = COrvelSceneNode::Create(&document, name);
        document.AddRootNode(root);
        return root;
    }

    COrvel3DObject* Object(const char* name, COrvelMaterial* material = nullptr)
    {
        if (!triangle)
            triangle = COrvelGeometry::Create(&document, {0.0, 0.0, 0.0, 3.0, 0.0, 0.0, 0.0, 5.0, 1.0}, {0, 1, 2});
        return COrvel3DObject::Create(&document, name, triangle, material);
    }

    PRCContent Plain()
    {
        EXPECT_TRUE(writer.Export(&document, file.c_str(), nullptr, nullptr, nullptr, nullptr, COrvelUnit()));
        return DecodePRCFile(file);
    }

    PRCContent Animated(std::vector<COrvelBasicSceneState>* states = nullptr)
    {
        EXPECT_TRUE(writer.ExportToMemory(&document, file.c_str(), nullptr, nullptr, states));
        return DecodePRCFile(file);
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder.Path() / "out.prc";
    COrvelDocument document;
    COrvelGeometry* triangle = nullptr;
    COrvelPRCWriter writer;
    COrvelPRCHandler& converter = *COrvelPRCHandler::Instance();
};

TEST_F(ExportRuns, NumberTheFirstRootByWhatTheFilePutsAboveIt)
{
    COrvelPRCMapper mapper;
    writer.SetPRCMapper(&mapper);
    COrvelSceneNode* const first = Root("first");
    COrvel3DObject* const inFirst = Object("in first");
    first->AddChild(inFirst);
    COrvel3DObject* const alone = Object("alone");
    document.AddRootNode(alone);
    COrvelSceneNode* const deleted = Root("deleted");
    deleted->AddChild(Object("in deleted"));
    deleted->SetDeleted(true);
    COrvelSceneNode* const hollow = Root("hollow");
    hollow->AddChild(Object("gone"));
    std::vector<COrvelSceneNode*> children;
    hollow->Children(children, true);
    children.at(0)->SetDeleted(true);

    Animated();
    EXPECT_EQ(mapper.MapIntoIndex(first), 1) << "one root has content: childless, deleted and hollow ones do not count";
    EXPECT_EQ(mapper.MapIntoIndex(inFirst), 2);
    EXPECT_EQ(mapper.MapIntoIndex(alone), 3);
    EXPECT_EQ(mapper.MapIntoIndex(deleted), -1);

    Root("second")->AddChild(Object("in second"));
    Animated();
    EXPECT_EQ(mapper.MapIntoIndex(first), 2);
    EXPECT_EQ(mapper.MapIntoIndex(alone), 4);
    EXPECT_EQ(mapper.nextNodeIndex, 7);
}

TEST_F(ExportRuns, CountFromOneWithoutAnyContent)
{
    COrvelPRCMapper mapper;
    writer.SetPRCMapper(&mapper);
    COrvel3DObject* const objects[] = {Object("one"), Object("two")};
    for (COrvel3DObject* object : objects)
        document.AddRootNode(object);
    Animated();
    EXPECT_EQ(mapper.MapIntoIndex(objects[0]), 1);
    EXPECT_EQ(mapper.MapIntoIndex(objects[1]), 2);
}

TEST_F(ExportRuns, OfThePlainKindUseAMapperOfTheirOwnAndCountFromZero)
{
    COrvelPRCMapper mapper;
    writer.SetPRCMapper(&mapper);
    COrvel3DObject* const object = Object("object", COrvelMaterial::Create(&document));
    document.AddRootNode(object);
    Plain();
    EXPECT_TRUE(mapper.nodeIndices.empty());
    EXPECT_NE(converter.mapper, &mapper);
    EXPECT_EQ(converter.mapper->MapIntoIndex(object), 0);

    // An animated run without a new mapper goes on with what the plain run left.
    COrvelPRCMapper* const plainMapper = converter.mapper;
    COrvelPRCHandler::MaterialNumbers* const plainNumbers = converter.materialNumbers;
    Animated();
    EXPECT_EQ(converter.mapper, plainMapper);
    EXPECT_EQ(converter.materialNumbers, plainNumbers);
    EXPECT_EQ(plainNumbers->size(), 1U);
    EXPECT_EQ(plainMapper->MapIntoIndex(object), 1);
    Plain();
    EXPECT_EQ(plainMapper->MapIntoIndex(object), 0);
}

TEST_F(ExportRuns, OfTheAnimatedKindKeepMaterialNumbersAndMapperOfTheRunBefore)
{
    COrvelPRCMapper mapper;
    writer.SetPRCMapper(&mapper);
    COrvelMaterial* const red = COrvelMaterial::Create(&document);
    COrvelMaterial* const blue = COrvelMaterial::Create(&document);
    COrvel3DObject* const object = Object("object", red);
    document.AddRootNode(object);
    Animated();
    EXPECT_EQ(converter.materialNumbers->at(red), 1U);

    object->SetMaterial(blue);
    COrvel3DObject* const second = Object("second", red);
    document.AddRootNode(second);
    mapper.hiddenNodeIndices = {99};
    const PRCContent content = Animated();
    EXPECT_EQ(converter.materialNumbers->at(red), 1U) << "the number of the earlier run stays";
    EXPECT_EQ(converter.materialNumbers->at(blue), 1U);
    EXPECT_THAT(mapper.hiddenNodeIndices, testing::ElementsAre(99)) << "the host's mapper is never reset";
    ASSERT_EQ(content.tessellations.size(), 2U);
    EXPECT_EQ(content.tessellations[1].faces[0].style, std::optional<size_t>(1)) << "the file counts for itself";
}

TEST_F(ExportRuns, OfTheAnimatedKindAddTheMaterialsOfSceneStatesBehindTheMeshes)
{
    COrvelPRCMapper mapper;
    writer.SetPRCMapper(&mapper);
    COrvelMaterial* const red = COrvelMaterial::Create(&document);
    document.AddRootNode(Object("object", red));
    COrvelBasicGeneralMaterial replacement;
    replacement.SetDiffuseColor(COrvelColor(0.1, 0.2, 0.3, 1.0));
    std::vector<COrvelBasicSceneState> states(1);
    states[0].materialReplacements[red] = &replacement;

    const PRCContent content = Animated(&states);
    std::map<int, int> replacements;
    ASSERT_TRUE(mapper.MapIntoMaterials(0, replacements));
    EXPECT_EQ(replacements, (std::map<int, int>{{1, 2}}));
    ASSERT_EQ(content.styles.size(), 2U);
    EXPECT_EQ(std::get<Material>(content.materials.at(content.styles[1].material)).diffuse, (Vector3{0.1, 0.2, 0.3}));
}

TEST_F(ExportRuns, GiveEqualBytesForEqualScenesUnderAnyName)
{
    document.AddRootNode(Object("object"));
    const auto bytes = [&](const char* name) {
        file = folder.Path() / name;
        const PRCContent content = Plain();
        return std::pair(content.fileId, content.structureId);
    };
    // The ambient alpha grows less with every mesh of a process until it reaches 0; then nothing differs any more.
    for (int i = 0; i < 120; ++i)
        Plain();
    EXPECT_EQ(bytes("a.prc"), bytes("b.prc"));
    std::ifstream a(folder.Path() / "a.prc", std::ios::binary);
    std::ifstream b(folder.Path() / "b.prc", std::ios::binary);
    const std::string contentOfA{std::istreambuf_iterator<char>(a), {}};
    const std::string contentOfB{std::istreambuf_iterator<char>(b), {}};
    EXPECT_GT(contentOfA.size(), 107U);
    EXPECT_EQ(contentOfA, contentOfB);
}

/// A node whose children cannot be listed.
class BrokenNode final : public COrvelSceneNode
{
public:
    explicit BrokenNode(COrvelDocument* document)
        : COrvelSceneNode(document, 1 << 20, "broken")
    {}
    COrvelString& Name() override { throw std::runtime_error("broken"); }
};

TEST_F(ExportRuns, LeaveEmptyCachesBehindHoweverTheyEnd)
{
    COrvelMaterial* const red = COrvelMaterial::Create(&document);
    document.AddRootNode(Object("one", red));
    document.AddRootNode(Object("two", red));
    const auto expectEmpty = [] {
        const ExportCaches& caches = ExportCaches::Instance();
        EXPECT_TRUE(caches.tessellationByGeometry.empty() && caches.geometryByMaterial.empty() &&
                    caches.materialNumberCache.empty());
    };
    Plain();
    expectEmpty();
    Animated();
    expectEmpty();
    document.AddRootNode(new BrokenNode(&document));
    EXPECT_THROW(Plain(), std::runtime_error);
    expectEmpty();
    EXPECT_THROW(Animated(), std::runtime_error);
    expectEmpty();
}

} // namespace
} // namespace Orvel::Test
