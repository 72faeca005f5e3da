// Collapsing groups: key frame data that are shown under one caption, hung from an entity of the scene.

#include "animation/COrvelAnimationCollapsingGroupGuidToCaptionMapper.h"
#include "animation/COrvelKeyFrameManager.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvel3DVectorsTable.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelLight.h"
#include "platform/core/COrvelSkeletonJoint.h"
#include "platform/core/COrvelTransform.h"
#include "platform/core/EntityTypes.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

namespace Orvel
{

namespace
{

using Entities = std::set<COrvelEntity*>;

/// Appends values to a list that are not in it yet.
template <class Value>
class UniqueValues
{
public:
    explicit UniqueValues(std::vector<Value>& newList)
        : list(newList)
        , known(newList.begin(), newList.end())
    {}

    void Add(const Value& value)
    {
        if (known.insert(value).second)
            list.push_back(value);
    }

private:
    std::vector<Value>& list;
    std::set<Value> known;
};

/// Inserts the objects that show a geometry with this table.
void InsertObjectsOf(const COrvel3DVectorsTable& table, Entities& affected)
{
    std::vector<COrvelGeometry*> geometries;
    table.ListGeometriesReferencingThisTable(geometries);
    for (const COrvelGeometry* const geometry : geometries)
        for (COrvel3DObject* const object : geometry->ObjectsReferencingThisGeometry())
            affected.insert(object);
}

/// Inserts the entities that show the animation of `entity`; none when that is of a kind that nothing shows.
void InsertAffected(COrvelEntity* entity, Entities& affected)
{
    std::vector<COrvelSceneNode*> nodes;
    if (auto* const node = dynamic_cast<COrvelSceneNode*>(entity)) {
        affected.insert(node);
    } else if (const auto* const transform = dynamic_cast<const COrvelTransform*>(entity)) {
        transform->ListSceneNodesReferencingThisTransform(nodes, true);
        affected.insert(nodes.begin(), nodes.end());
    } else if (const auto* const light = dynamic_cast<const COrvelLight*>(entity)) {
        light->GetLightSourcesReferencingThisLight(nodes);
        affected.insert(nodes.begin(), nodes.end());
    } else if (const auto* const table = dynamic_cast<const COrvel3DVectorsTable*>(entity)) {
        InsertObjectsOf(*table, affected);
    } else if (entity) {
        const int type = entity->ID().EntityType();
        if (type == eEntityType_Material || type == eEntityType_Geometry)
            affected.insert(entity);
    }
}

COrvelEntity* OwnerOf(const Entities& affected)
{
    if (affected.size() == 1)
        return *affected.begin();
    std::vector<COrvelNodePath> paths;
    for (COrvelEntity* const entity : affected)
        if (auto* const node = dynamic_cast<COrvelSceneNode*>(entity))
            paths.push_back(node->NodePathToRoot(true));
    return COrvelSceneNode::NearestCommonParent(paths).SceneNode();
}

/// Makes the data one new group; nothing when the owner has no GUID to hang it from.
void MakeGroup(const COrvelEntity* owner, const KeyFrameDataList& list, COrvelString caption)
{
    if (!owner || !owner->GetGuid().IsValid())
        return;
    COrvelUUID group;
    group.Generate();
    COrvelAnimationCollapsingGroupGuidToCaptionMapper::Instance()->AddCaption(group, std::move(caption));
    for (const COrvelPtr<COrvelKeyFrameData>& data : list) {
        data->SetOwnerGuid(owner->GetGuid());
        data->SetCollapsingGroupID(group);
    }
}

/// The root of the skeleton that moves with a node; null when there is none.
COrvelSkeletonJoint* SkeletonRootOf(COrvelSceneNode& node)
{
    COrvelSkeletonJoint* const joint = node.GetNearestJointParent();
    return joint && joint->GetJointType() != eJointType_Root ? joint->FindSkeletonRoot() : joint;
}

KeyFrameDataList DataOf(COrvelEntity* entity)
{
    KeyFrameDataList list;
    COrvelKeyFrameManager::ListKeyFrameDataOfEntity(entity, list);
    return list;
}

bool Owns(COrvelSceneNode* node)
{
    const COrvelUUID guid = node->GetGuid();
    const KeyFrameDataList list = DataOf(node);
    return std::any_of(list.begin(), list.end(), [&guid](const auto& data) { return data->OwnerGuid() == guid; });
}

bool IsInside(int frame, const FrameRange& span)
{
    return span.first <= frame && frame <= span.second;
}

} // namespace

void COrvelKeyFrameManager::CollapseKeyFrameData(const KeyFrameDataList& data, COrvelString caption)
{
    Entities affected;
    KeyFrameDataList collected;
    for (const COrvelPtr<COrvelKeyFrameData>& one : data) {
        Entities affectedByOne;
        if (one)
            InsertAffected(one->AnimatedEntityID().Entity(), affectedByOne);
        if (affectedByOne.empty())
            continue;
        affected.merge(affectedByOne);
        collected.push_back(one);
    }
    MakeGroup(OwnerOf(affected), collected, std::move(caption));
}

void COrvelKeyFrameManager::CollapseKeyFrameDataBySkeleton(
    const KeyFrameDataList& data, const std::vector<COrvelSkeletonJoint*>& roots,
    // NOLINTNEXTLINE(performance-unnecessary-value-param): promised
    COrvelString caption)
{
    std::unordered_map<COrvelSkeletonJoint*, KeyFrameDataList> dataByRoot;
    for (COrvelSkeletonJoint* const root : roots)
        if (root)
            dataByRoot.try_emplace(root);
    std::vector<COrvelSceneNode*> nodes;
    for (const COrvelPtr<COrvelKeyFrameData>& one : data) {
        const auto* const transform =
            one ? dynamic_cast<const COrvelTransform*>(one->AnimatedEntityID().Entity()) : nullptr;
        if (!transform)
            continue;
        transform->ListSceneNodesReferencingThisTransform(nodes, true);
        for (COrvelSceneNode* const node : nodes) {
            const auto wanted = dataByRoot.find(SkeletonRootOf(*node));
            if (wanted != dataByRoot.end())
                wanted->second.push_back(one);
        }
    }
    // In the order of the list, which is the same in every run; a root that the list names twice makes one group.
    for (COrvelSkeletonJoint* const root : roots) {
        const auto collected = dataByRoot.extract(root);
        if (collected && !collected.mapped().empty())
            MakeGroup(root, collected.mapped(), caption);
    }
}

void COrvelKeyFrameManager::DetachFromCollapsingGroup(KeyFrameDataList& moved, const KeyFrameDataList& group)
{
    if (moved.empty() || group.size() < 2)
        return;
    const auto first = std::min_element(group.begin(), group.end(), [](const auto& left, const auto& right) {
        return left->StartFrame() < right->StartFrame();
    });
    FrameRange movedSpan;
    FrameRange groupSpan;
    FrameSpan(moved, movedSpan);
    FrameSpan(group, groupSpan);
    if (!(*first)->OwnerGuid().IsValid() || IsInside(movedSpan.first, groupSpan) ||
        IsInside(movedSpan.second, groupSpan))
        return;
    COrvelUUID id;
    id.Generate();
    for (const COrvelPtr<COrvelKeyFrameData>& data : moved)
        data->SetCollapsingGroupID(id);
}

KeyFrameDataByGroup COrvelKeyFrameManager::KeyFrameDataByCollapsingGroup(const KeyFrameDataList& data)
{
    KeyFrameDataByGroup groups;
    for (const COrvelPtr<COrvelKeyFrameData>& one : data)
        if (one && one->IsInCollapsingGroup())
            groups[one->CollapsingGroupID()].push_back(one);
    return groups;
}

void COrvelKeyFrameManager::CollapsingGroupSpans(const KeyFrameDataByGroup& groups,
                                                 std::map<COrvelUUID, FrameRange>& spans)
{
    for (const auto& [id, data] : groups) {
        FrameRange span;
        FrameSpan(data, span);
        spans[id] = span;
    }
}

void COrvelKeyFrameManager::ListCollapsingGroupOwners(const KeyFrameDataList& data, std::vector<COrvelEntity*>& owners)
{
    UniqueValues<COrvelEntity*> unique(owners);
    for (const COrvelPtr<COrvelKeyFrameData>& one : data)
        if (COrvelEntity* const owner = one ? COrvelEntity::GetEntityByGuid(one->OwnerGuid()) : nullptr)
            unique.Add(owner);
}

void COrvelKeyFrameManager::ListCollapsingGroupIDs(COrvelEntity* entity, std::vector<COrvelUUID>& ids)
{
    UniqueValues<COrvelUUID> unique(ids);
    for (const COrvelPtr<COrvelKeyFrameData>& data : DataOf(entity))
        unique.Add(data->CollapsingGroupID());
}

void COrvelKeyFrameManager::CollapsingGroupIDsByEntity(const std::vector<COrvelEntity*>& entities,
                                                       std::map<COrvelEntity*, std::vector<COrvelUUID>>& ids)
{
    for (COrvelEntity* const entity : entities) {
        const auto [entry, isNew] = ids.try_emplace(entity);
        if (isNew)
            ListCollapsingGroupIDs(entity, entry->second);
    }
}

void COrvelKeyFrameManager::KeyFrameDataByCollapsingGroupOfEntities(
    const std::map<COrvelEntity*, std::vector<COrvelUUID>>& ids, KeyFrameDataByGroup& groups)
{
    for (const auto& [entity, groupIDs] : ids) {
        KeyFrameDataByGroup ofEntity;
        for (const COrvelPtr<COrvelKeyFrameData>& data : DataOf(entity))
            ofEntity[data->CollapsingGroupID()].push_back(data);
        for (const COrvelUUID& id : groupIDs)
            groups.try_emplace(id, std::move(ofEntity[id]));
    }
}

bool COrvelKeyFrameManager::OwnsCollapsingGroup(COrvelSceneNode* node)
{
    for (COrvelSceneNode* inTree = node; inTree;) {
        const bool isLeftOut = inTree != node && inTree->IsDeleted();
        if (!isLeftOut && Owns(inTree))
            return true;
        inTree = inTree->NextInSubtree(node, isLeftOut);
    }
    return false;
}

} // namespace Orvel
