#include "tool/animation/EntityTable.h"

#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelArchiveBase.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelDocumentsContainer.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelLight.h"
#include "platform/core/COrvelLightSource.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelMorphingTable.h"
#include "platform/core/COrvelTransform.h"
#include "platform/core/COrvelVerticiesTable.h"
#include "platform/core/EntityTypes.h"
#include "tool/import/ImportReport.h"

#include <algorithm>
#include <string>
#include <unordered_set>

namespace Orvel::Animate
{

namespace
{

class EntityCollector
{
public:
    void AddTree(const COrvelSceneNode& node)
    {
        const std::size_t parentLength = place.size();
        if (!place.empty())
            place += '/';
        place += node.Name().toStdString();
        AddNode(node);
        for (const COrvelSceneNode* const child : node.Children())
            AddTree(*child);
        place.resize(parentLength);
    }
    void AddUnshown(const COrvelMaterial& material)
    {
        place = material.Name().toStdString();
        Add(&material);
    }

    EntityTable entities;

private:
    void AddNode(const COrvelSceneNode& node)
    {
        Add(&node);
        Add(node.LocalTransform());
        if (const auto* const object = dynamic_cast<const COrvel3DObject*>(&node))
            AddWhatIsShown(*object);
        if (const auto* const source = dynamic_cast<const COrvelLightSource*>(&node))
            Add(source->Light());
    }
    void AddWhatIsShown(const COrvel3DObject& object)
    {
        if (const COrvelGeometry* const geometry = object.Geometry()) {
            Add(geometry);
            Add(geometry->VerticiesTable());
        }
        if (object.HasOwnMaterial())
            Add(object.Material());
        if (object.MorphingTable())
            for (const COrvelID& target : object.MorphingTable()->ListAllMorphGeometries())
                Add(target.Entity());
    }
    void Add(const COrvelEntity* entity)
    {
        if (entity && !entity->IsDefault() && known.insert(entity).second)
            entities.push_back({entity->ID(), COrvelString(place), entity->GetGuid()});
    }

    std::string place;
    std::unordered_set<const COrvelEntity*> known;
};

const char* KindOf(const COrvelID& id)
{
    switch (id.EntityType()) {
    case eEntityType_3DObject:
        return "object";
    case eEntityType_Camera:
        return "camera";
    case eEntityType_Material:
        return "material";
    case eEntityType_LightSource:
        return "light source";
    case eEntityType_Transform:
        return "transform";
    case eEntityType_VectorsTable:
        return "vertex table";
    case eEntityType_Light:
        return "light";
    case eEntityType_Geometry:
        return "shape";
    case eEntityType_LinePath:
        return "path";
    case eEntityType_SkeletonJoint:
        return "joint";
    default:
        return "node";
    }
}

std::string TextOf(const EntityTable& entities, std::size_t position)
{
    if (position >= entities.size())
        return "nothing more";
    const EntityRecord& entity = entities[position];
    return std::string(KindOf(entity.id)) + " " + Import::Quoted(entity.place.toStdString());
}

} // namespace

bool EntityRecord::ArchiveReadWrite(COrvelArchiveBase& archive)
{
    return archive.ReadWrite(id, place, guid);
}

EntityTable ListEntities(const COrvelDocument& document)
{
    EntityCollector collector;
    std::vector<COrvelSceneNode*> roots;
    document.ListRootSceneNodes(roots);
    for (const COrvelSceneNode* const root : roots)
        collector.AddTree(*root);
    std::vector<COrvelMaterial*> materials;
    document.ListMaterials(materials);
    for (const COrvelMaterial* const material : materials)
        collector.AddUnshown(*material);
    return std::move(collector.entities);
}

bool ArchiveEntities(COrvelArchiveBase& archive, EntityTable& entities)
{
    constexpr uint32 bytesPerEntity = 32; // without the place
    auto count = static_cast<uint32>(entities.size());
    if (!archive.ReadWriteCount(count, bytesPerEntity))
        return false;
    entities.resize(count);
    return std::all_of(entities.begin(), entities.end(),
                       [&](EntityRecord& entity) { return archive.ReadWrite(entity); });
}

void ReplaceEntities(const EntityTable& stored, const EntityTable& present)
{
    const auto isSame = [](const EntityRecord& left, const EntityRecord& right) {
        return left.id.EntityType() == right.id.EntityType() && left.place == right.place;
    };
    const auto [firstStored, firstPresent] =
        std::mismatch(stored.begin(), stored.end(), present.begin(), present.end(), isSame);
    if (firstStored != stored.end() || firstPresent != present.end()) {
        const auto position = static_cast<std::size_t>(firstStored - stored.begin());
        throw Import::ImportError("it is of another scene: there, entity " + std::to_string(position + 1) + " is " +
                                  TextOf(stored, position) + ", here it is " + TextOf(present, position));
    }
    COrvelDocumentsContainer& container = *COrvelDocumentsContainer::DocumentsContainer();
    for (std::size_t k = 0; k < stored.size(); ++k) {
        container.AddTranslatedID(stored[k].id, present[k].id);
        container.AddReplacedUUID(stored[k].guid, present[k].guid);
    }
}

} // namespace Orvel::Animate
