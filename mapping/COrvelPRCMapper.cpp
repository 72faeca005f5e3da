#include "mapping/COrvelPRCMapper.h"

namespace Orvel
{

namespace
{

template <typename Container>
void CopyUnlessSame(const Container& from, Container& to)
{
    if (&from != &to)
        to = from;
}

} // namespace

// Standard containers promise an empty source only for the allocator-equal cases that concern us in practice, not in
// wording; exchange() states what hosts rely on.
COrvelPRCMapper::COrvelPRCMapper(COrvelPRCMapper&& source) noexcept
    : hiddenNodeIndices(std::exchange(source.hiddenNodeIndices, {}))
    , nextNodeIndex(source.nextNodeIndex)
    , nodeIndices(std::exchange(source.nodeIndices, {}))
    , sceneStateMaterials(std::exchange(source.sceneStateMaterials, {}))
    , materialAnimation(std::exchange(source.materialAnimation, {}))
    , materialSequenceAnimation(std::exchange(source.materialSequenceAnimation, {}))
    , cameraAnimation(std::exchange(source.cameraAnimation, {}))
{}

COrvelPRCMapper& COrvelPRCMapper::operator=(COrvelPRCMapper&& source) noexcept
{
    if (this == &source)
        return *this;
    hiddenNodeIndices = std::exchange(source.hiddenNodeIndices, {});
    nextNodeIndex = source.nextNodeIndex;
    nodeIndices = std::exchange(source.nodeIndices, {});
    sceneStateMaterials = std::exchange(source.sceneStateMaterials, {});
    materialAnimation = std::exchange(source.materialAnimation, {});
    materialSequenceAnimation = std::exchange(source.materialSequenceAnimation, {});
    cameraAnimation = std::exchange(source.cameraAnimation, {});
    return *this;
}

void COrvelPRCMapper::AddMapping(COrvelSceneNode* node, int index)
{
    nodeIndices[node] = index;
}

void COrvelPRCMapper::AddMapping(int ordinal, std::map<int, int>& replacements)
{
    CopyUnlessSame(replacements, sceneStateMaterials[ordinal]);
}

void COrvelPRCMapper::AddMapping(int materialNumber, std::vector<int>& numbersByFrame)
{
    CopyUnlessSame(numbersByFrame, materialAnimation[materialNumber]);
}

void COrvelPRCMapper::AddMaterialSequenceAnimationMapping(COrvelString key, std::map<int, std::vector<int>> animation)
{
    materialSequenceAnimation[std::move(key)] = std::move(animation);
}

void COrvelPRCMapper::SetCameraAnimationData(std::vector<std::pair<COrvelBasicCamera, COrvelString>>& cameras)
{
    CopyUnlessSame(cameras, cameraAnimation);
}

void COrvelPRCMapper::RemoveMemberFromMap(COrvelSceneNode* node)
{
    nodeIndices.erase(node);
}

void COrvelPRCMapper::Reset()
{
    hiddenNodeIndices.clear();
    nextNodeIndex = 0;
    nodeIndices.clear();
    sceneStateMaterials.clear();
}

int COrvelPRCMapper::MapIntoIndex(COrvelSceneNode* node) const
{
    const auto found = nodeIndices.find(node);
    return found == nodeIndices.end() ? -1 : found->second;
}

bool COrvelPRCMapper::MapIntoMaterials(int ordinal, std::map<int, int>& replacements) const
{
    const auto found = sceneStateMaterials.find(ordinal);
    if (found == sceneStateMaterials.end())
        return false;
    CopyUnlessSame(found->second, replacements);
    return !found->second.empty();
}

void COrvelPRCMapper::ListMaterialAnimation(std::map<int, std::vector<int>>& animation) const
{
    CopyUnlessSame(materialAnimation, animation);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the parameter list is part of the contract
void COrvelPRCMapper::ListMaterialSequenceAnimation(COrvelString key, std::map<int, std::vector<int>>& animation) const
{
    // A walk with ==, not find(): where the two comparisons of COrvelString disagree, equality decides.
    for (const auto& [storedKey, stored] : materialSequenceAnimation) {
        if (storedKey == key) {
            CopyUnlessSame(stored, animation);
            return;
        }
    }
}

void COrvelPRCMapper::ListCameraAnimation(std::vector<std::pair<COrvelBasicCamera, COrvelString>>& cameras) const
{
    CopyUnlessSame(cameraAnimation, cameras);
}

} // namespace Orvel
