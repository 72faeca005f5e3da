// A host with a scene of its own: a plate and four bolts that come down into it. Writes assembly.prc, and prints what a
// program that drives the viewer has to know.

#include "animation/COrvelKeyFrameDataTransform.h"
#include "animation/COrvelKeyFrameManager.h"
#include "mapping/COrvelPRCMapper.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelBasicSceneState.h"
#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelTextureCoordinatesTable.h"
#include "platform/core/COrvelTransform.h"
#include "writer/COrvelPRCWriter.h"

#include <cstddef>
#include <exception>
#include <fstream>
#include <iostream>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

namespace
{

using namespace Orvel;

constexpr int LastFrame = 48;

/// Points, normals, texture coordinates and triangles of a box around the origin, its sides as separate faces.
struct Box
{
    Box(double width, double depth, double height)
    {
        const double half[] = {width / 2, depth / 2, height / 2};
        for (int side = 0; side < 6; ++side) {
            const int axis = side / 2, right = (axis + 1) % 3, up = (axis + 2) % 3;
            const double sign = side % 2 == 0 ? 1.0 : -1.0;
            const auto first = static_cast<uint32>(points.size() / 3);
            for (const auto& [u, v] : {std::pair{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}) {
                double point[3], normal[3] = {0, 0, 0};
                point[axis] = sign * half[axis];
                point[right] = sign * u * half[right];
                point[up] = v * half[up];
                normal[axis] = sign;
                points.insert(points.end(), point, point + 3);
                normals.insert(normals.end(), normal, normal + 3);
                textureCoordinates.insert(textureCoordinates.end(), {(u + 1) / 2.0, (v + 1) / 2.0});
            }
            for (const uint32 corner : {0U, 1U, 2U, 0U, 2U, 3U})
                triangles.push_back(first + corner);
        }
    }

    std::vector<double> points, normals, textureCoordinates;
    std::vector<uint32> triangles;
};

void WriteStripes(const char* fileName)
{
    constexpr int size = 64;
    std::ofstream picture(fileName);
    picture << "P3 " << size << ' ' << size << " 255\n";
    for (int pixel = 0; pixel < size * size; ++pixel)
        picture << (pixel / 8 % 2 == 0 ? "190 195 200\n" : "120 130 145\n");
}

COrvelMaterial* MakeMaterial(COrvelDocument& document, const char* name, const COrvelColor& colour)
{
    COrvelBasicGeneralMaterial looks;
    looks.SetName(name);
    looks.SetAmbientColor(COrvelColor(0.2 * colour.R(), 0.2 * colour.G(), 0.2 * colour.B()));
    looks.SetDiffuseColor(colour);
    looks.SetSpecularColor(COrvelColor(0.3, 0.3, 0.3));
    return COrvelMaterial::Create(&document, looks);
}

COrvel3DObject* AddPlate(COrvelDocument& document, COrvelSceneNode* assembly)
{
    const Box box(120, 80, 8);
    COrvel3DObject* plate = COrvel3DObject::Create(&document, "Plate");
    plate->SetGeometry(COrvelGeometry::Create(&document, box.points, box.triangles, box.normals));
    plate->SetTextureCoordinatesTable(COrvelTextureCoordinatesTable::Create(&document, box.textureCoordinates));

    WriteStripes("stripes.ppm");
    COrvelMaterial* striped = MakeMaterial(document, "Striped", COrvelColor(1, 1, 1));
    striped->ApproximateToOrvelGeneralMaterial()->SetTexture(textureTypeDiffuse, COrvelTexture("stripes.ppm"));
    plate->SetMaterial(striped);
    assembly->AddChild(plate);
    return plate;
}

std::vector<COrvel3DObject*> AddBolts(COrvelDocument& document, COrvelSceneNode* assembly, COrvelMaterial* steel)
{
    const Box box(8, 8, 30);
    COrvelGeometry* shape = COrvelGeometry::Create(&document, box.points, box.triangles, box.normals);
    std::vector<COrvel3DObject*> bolts;
    for (const auto& [x, y] : {std::pair{-50, -30}, {50, -30}, {50, 30}, {-50, 30}}) {
        const std::string name = "Bolt " + std::to_string(bolts.size() + 1);
        COrvel3DObject* bolt = COrvel3DObject::Create(&document, name.c_str(), shape, steel);
        bolt->SetLocalMatrix(COrvelMatrix::CreateTranslation({double(x), double(y), 15}));
        assembly->AddChild(bolt);
        bolts.push_back(bolt);
    }
    return bolts;
}

void AddKey(COrvelKeyFrameManager& timeline, COrvelSceneNode* node, int frame, const COrvelMatrix& matrix)
{
    COrvelPtr<COrvelKeyFrameData> key =
        COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(node->LocalTransform()->ID(), matrix);
    key->SetFrame(frame);
    timeline.AddKeyFrameData(key, true);
}

/// One after the other comes down by 60 mm and turns meanwhile; between two keys the motion is blended.
void AnimateBolts(COrvelKeyFrameManager& timeline, const std::vector<COrvel3DObject*>& bolts)
{
    for (std::size_t i = 0; i < bolts.size(); ++i) {
        const int start = static_cast<int>(i) * LastFrame / 4;
        const COrvelMatrix place = bolts[i]->LocalMatrix();
        COrvelMatrix turned;
        turned.DefineByRotation(std::numbers::pi / 2, 0, 0, 1);
        AddKey(timeline, bolts[i], start, COrvelMatrix::CreateTranslation({0, 0, 60}) * place * turned);
        AddKey(timeline, bolts[i], start + LastFrame / 4, place);
    }
}

/// A camera that goes a quarter round the assembly.
void AddCamera(COrvelDocument& document, COrvelKeyFrameManager& timeline)
{
    COrvelCamera* camera = COrvelCamera::Create(&document, "Round");
    camera->SetFOV(30);
    camera->SetDistanceToTarget(300);
    document.AddRootNode(camera);
    document.SetActiveCamera(camera);
    for (int frame = 0; frame <= LastFrame; frame += 12) {
        COrvelMatrix around;
        around.DefineByRotation(std::numbers::pi / 2 * frame / LastFrame, 0, 0, 1);
        const COrvelMatrix tilted = COrvelMatrix::CreateRotaionAroundX(std::numbers::pi / 3);
        AddKey(timeline, camera, frame, around * tilted * COrvelMatrix::CreateTranslation({0, 0, 300}));
    }
}

/// A variant of the scene: what shows `steel` shows brass instead.
COrvelBasicSceneState MakeBrassState(COrvelDocument& document, COrvelMaterial* steel)
{
    COrvelMaterial* brass = MakeMaterial(document, "Brass", COrvelColor(0.8, 0.6, 0.2));
    COrvelBasicSceneState state;
    state.materialReplacements[steel] = brass->BasicMaterial();
    return state;
}

void Print(const COrvelPRCMapper& mapper, const std::vector<COrvel3DObject*>& bolts)
{
    for (COrvel3DObject* bolt : bolts)
        std::cout << bolt->Name().toStdString() << " is node " << mapper.MapIntoIndex(bolt) << '\n';
    std::map<int, int> replacements;
    if (mapper.MapIntoMaterials(0, replacements))
        for (const auto& [replaced, replacement] : replacements)
            std::cout << "state 0 shows material " << replacement << " for " << replaced << '\n';
    std::cout << "the camera has " << mapper.cameraAnimation.size() << " frames\n";
}

int Run()
{
    COrvelDocument document;
    COrvelSceneNode* assembly = COrvelSceneNode::Create(&document, "Assembly");
    document.AddRootNode(assembly);

    COrvelMaterial* steel = MakeMaterial(document, "Steel", COrvelColor(0.5, 0.5, 0.55));
    AddPlate(document, assembly);
    const std::vector<COrvel3DObject*> bolts = AddBolts(document, assembly, steel);

    COrvelPRCWriter writer;
    COrvelKeyFrameManager* timeline = COrvelKeyFrameManager::Instance();
    AnimateBolts(*timeline, bolts);
    AddCamera(document, *timeline);
    std::vector<COrvelBasicSceneState> states{MakeBrassState(document, steel)};

    COrvelPRCMapper mapper;
    writer.SetPRCMapper(&mapper);
    writer.SetMaximumTextureSize(512);
    if (!writer.ExportToMemory(&document, "assembly.prc", nullptr, nullptr, &states))
        return 1;
    Print(mapper, bolts);
    return 0;
}

} // namespace

int main()
{
    try {
        return Run();
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
