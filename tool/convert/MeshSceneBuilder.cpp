#include "tool/convert/MeshSceneBuilder.h"

#include "tool/convert/MeshPrimitives.h"
#include "tool/convert/SceneMaterials.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace Orvel::Convert
{

namespace
{

using namespace prc::Model;

/// What a kind of thing that is not decoded is called, as one and as many.
using KindName = std::pair<const char*, const char*>;

KindName KindOf(prc::EntityType tessellation)
{
    switch (tessellation) {
    case prc::EntityType::Tessellation3DCompressed:
        return {"compressed mesh", "compressed meshes"};
    case prc::EntityType::Tessellation3DWire:
        return {"wire", "wires"};
    default:
        return {"markup", "markups"};
    }
}

class Builder
{
public:
    Builder(const PRCModel& readModel, const PlacedScene& placedScene, Import::ImportReport& importReport)
        : model(readModel)
        , placed(placedScene)
        , report(importReport)
        , materials(readModel, scene, importReport)
    {}

    MeshScene Run()
    {
        std::vector<std::uint32_t> nodeOf(placed.occurrences.size(), None);
        auto first = placed.items.begin();
        for (std::uint32_t number = 0; number < placed.occurrences.size(); ++number) {
            const auto last = std::find_if(first, placed.items.end(),
                                           [number](const PlacedItem& item) { return item.occurrence != number; });
            const PlacedOccurrence& occurrence = placed.occurrences[number];
            if (!occurrence.isRemoved) {
                const std::uint32_t parent = occurrence.parent == prc::nullIndex ? None : nodeOf[occurrence.parent];
                nodeOf[number] = AddNode(occurrence, parent);
                AddItems({first, last}, nodeOf[number]);
            }
            first = last;
        }
        Report();
        return std::move(scene);
    }

private:
    using Items = std::pair<std::vector<PlacedItem>::const_iterator, std::vector<PlacedItem>::const_iterator>;

    /// What makes two placed tessellations the same mesh.
    using MeshKey = std::vector<std::uint32_t>;

    [[nodiscard]] const RepresentationItem& StoredItem(const PlacedItem& item) const
    {
        return model.structures[item.structure].parts[item.part].items[item.item];
    }

    std::uint32_t AddNode(const PlacedOccurrence& occurrence, std::uint32_t parent)
    {
        const ProductOccurrence& own = model.structures[occurrence.structure].occurrences[occurrence.occurrence];
        const ProductOccurrence& content =
            model.structures[occurrence.content.structure].occurrences[occurrence.content.occurrence];
        Node node;
        node.name = own.name && !own.name->empty() ? *own.name : content.name.value_or("");
        node.parent = parent;
        node.transform = own.location.value_or(prc::identityMatrix);
        scene.nodes.push_back(std::move(node));
        return static_cast<std::uint32_t>(scene.nodes.size() - 1);
    }

    void AddItems(const Items& items, std::uint32_t node)
    {
        const bool isSingle = items.second - items.first == 1;
        for (auto item = items.first; item != items.second; ++item) {
            const std::uint32_t mesh = MeshOf(*item);
            if (mesh == None)
                continue;
            if (!item->isShown)
                ++hidden;
            const prc::Matrix place = PlaceInPart(*item);
            const std::string name = StoredItem(*item).name.value_or("");
            if (isSingle && name.empty() && place == prc::identityMatrix)
                scene.nodes[node].mesh = mesh;
            else
                scene.nodes.push_back({name, node, place, mesh});
        }
    }

    /// The coordinate systems of an item and of the sets around it.
    [[nodiscard]] prc::Matrix PlaceInPart(const PlacedItem& placedItem) const
    {
        const FileStructure& structure = model.structures[placedItem.structure];
        const std::vector<RepresentationItem>& items = structure.parts[placedItem.part].items;
        prc::Matrix place = prc::identityMatrix;
        for (std::uint32_t item = placedItem.item; item != prc::nullIndex; item = items[item].set) {
            if (items[item].coordinateSystem != prc::nullIndex)
                place =
                    multiplied(structure.globals.coordinateSystems[items[item].coordinateSystem].transformation, place);
        }
        return place;
    }

    /// @return None for what cannot be shown.
    std::uint32_t MeshOf(const PlacedItem& item)
    {
        const RepresentationItem& stored = StoredItem(item);
        if (stored.type == prc::EntityType::CoordinateSystem)
            return None;
        if (stored.tessellation == prc::nullIndex) {
            LeaveOut({"thing without a mesh (exact geometry)", "things without a mesh (exact geometry)"});
            return None;
        }
        const Tessellation& tessellation = model.structures[item.structure].tessellations[stored.tessellation];
        if (tessellation.type != prc::EntityType::Tessellation3D) {
            LeaveOut(KindOf(tessellation.type));
            return None;
        }
        MeshKey key{item.structure, stored.tessellation, item.style.structure, item.style.style};
        for (std::uint32_t i = 0; i < item.faceStyleCount; ++i) {
            const FaceStyle& style = placed.faceStyles[item.firstFaceStyle + i];
            key.insert(key.end(), {style.face, style.style.structure, style.style.style});
        }
        const auto [found, isNew] = meshes.try_emplace(std::move(key), None);
        if (isNew)
            found->second = AddMesh(item, tessellation);
        return found->second;
    }

    std::uint32_t AddMesh(const PlacedItem& item, const Tessellation& tessellation)
    {
        std::map<std::uint32_t, std::size_t> builderOfMaterial;
        std::vector<std::pair<std::uint32_t, PrimitiveBuilder>> builders; // in the order of the faces
        for (std::uint32_t face = 0; face < tessellation.faces.size(); ++face) {
            if (!tessellation.faces[face].isUsable)
                ++unusableFaces;
            if (tessellation.faces[face].triangleCount == 0)
                continue;
            const std::uint32_t material = materials.MaterialOf(styleOfFace(model, placed, item, face));
            const auto [found, isNew] = builderOfMaterial.try_emplace(material, builders.size());
            if (isNew)
                builders.emplace_back(material, PrimitiveBuilder(tessellation));
            builders[found->second].second.Add(tessellation.faces[face]);
        }
        Mesh mesh;
        for (auto& [material, builder] : builders) {
            Primitive primitive = builder.Build(triangles);
            primitive.material = material;
            if (!primitive.indices.empty())
                mesh.primitives.push_back(std::move(primitive));
        }
        if (mesh.primitives.empty())
            return None;
        scene.meshes.push_back(std::move(mesh));
        return static_cast<std::uint32_t>(scene.meshes.size() - 1);
    }

    void LeaveOut(const KindName& kind)
    {
        ++notDecoded;
        report.CountLeftOut(kind.first, kind.second);
    }

    void Report()
    {
        if (scene.meshes.empty() && notDecoded > 0) {
            std::string reason = "it holds nothing that can be converted";
            for (const std::string& warning : report.Warnings())
                reason += "; " + warning;
            throw ConvertError(reason);
        }
        if (unusableFaces > 0)
            report.CountLeftOut("damaged face", "damaged faces", unusableFaces);
        if (triangles > 0)
            report.CountLeftOut("triangle beyond the range of single precision",
                                "triangles beyond the range of single precision", triangles);
        if (hidden > 0)
            report.Warn(std::to_string(hidden) + (hidden == 1 ? " hidden object is" : " hidden objects are") +
                        " shown: the format has no hidden ones");
    }

    const PRCModel& model;
    const PlacedScene& placed;
    Import::ImportReport& report;
    MeshScene scene;
    SceneMaterials materials;
    std::map<MeshKey, std::uint32_t> meshes;
    std::size_t notDecoded = 0;
    std::size_t unusableFaces = 0;
    std::size_t triangles = 0; ///< left out
    std::size_t hidden = 0;
};

} // namespace

MeshScene BuildMeshScene(const PRCModel& model, const PlacedScene& scene, Import::ImportReport& report)
{
    return Builder(model, scene, report).Run();
}

} // namespace Orvel::Convert
