// What material and light data store behind the record of every key frame data: the kind of the material or light, by
// which a reader makes it, its structure, by which a reader that lacks the kind finds its way, and the thing itself.

#include "animation/COrvelKeyFrameDataLight.h"
#include "animation/COrvelKeyFrameDataMaterial.h"
#include "animation/records/LayoutVersions.h"
#include "platform/core/COrvelArchiveBase.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelBasicPointLight.h"

namespace Orvel
{

namespace
{

struct MaterialKinds
{
    using Value = COrvelBasicMaterial;
    static Value* Create(const COrvelString& kind) { return COrvelBasicMaterial::CreateBasicMaterial(kind); }
    static Value* CreateForUnknownKind() { return COrvelBasicGeneralMaterial::Create(); }
    static bool ArchiveEmbedded(COrvelArchiveBase& archive)
    {
        return COrvelBasicMaterial::ArchiveEmbeddedStructure(archive);
    }
};

struct LightKinds
{
    using Value = COrvelBasicLight;
    static Value* Create(const COrvelString& kind) { return COrvelBasicLight::CreateBasicLight(kind); }
    static Value* CreateForUnknownKind() { return new COrvelBasicPointLight; }
    static bool ArchiveEmbedded(COrvelArchiveBase&) { return true; }
};

/// Nothing held is stored as an unnamed value of no kind and without fields, which every reader finds its way through.
template <class Kinds>
bool WriteHeld(COrvelArchiveBase& archive, typename Kinds::Value* held)
{
    COrvelString kind;
    COrvelStructureDescription description;
    if (held) {
        kind = held->KindName();
        description = held->StructureDescription();
    }
    COrvelDataMembersManager nothing;
    COrvelDataMembersManager& stored = held ? *held : nothing;
    return archive.ReadWrite(kind) && Kinds::ArchiveEmbedded(archive) && archive.ReadWrite(description, stored);
}

/// @param made of the kind that was stored; null when that is unknown.
template <class Kinds, class Held>
bool ReadDescribed(COrvelArchiveBase& archive, Held& made)
{
    COrvelStructureDescription description;
    if (!archive.ReadWrite(description))
        return false;
    if (made)
        return archive.ReadWrite(*made);
    made.reset(Kinds::CreateForUnknownKind());
    return made->ReadDescribed(archive, description);
}

/// In files that describe no structures, a number stands in that place, and only known kinds can be read.
template <class Held>
bool ReadUndescribed(COrvelArchiveBase& archive, Held& made)
{
    int unused = 0;
    return archive.ReadWrite(unused) && made && archive.ReadWrite(*made);
}

/// @return whether all could be read; `held` is then replaced.
template <class Kinds, class Held>
bool ReadHeld(COrvelArchiveBase& archive, Held& held)
{
    COrvelString kind;
    if (!archive.ReadWrite(kind) || !Kinds::ArchiveEmbedded(archive))
        return false;
    Held made(Kinds::Create(kind));
    const bool isDescribed = DocumentVersion() >= LayoutVersion::structureDescription;
    if (!(isDescribed ? ReadDescribed<Kinds>(archive, made) : ReadUndescribed(archive, made)))
        return false;
    held = kind.IsEmpty() ? nullptr : std::move(made);
    return true;
}

} // namespace

bool COrvelKeyFrameDataMaterial::WriteIntoArchive(COrvelArchiveBase& archive)
{
    return COrvelKeyFrameData::WriteIntoArchive(archive) && WriteHeld<MaterialKinds>(archive, material.get());
}

bool COrvelKeyFrameDataMaterial::ReadFromArchive(COrvelArchiveBase& archive)
{
    return COrvelKeyFrameData::ReadFromArchive(archive) && ReadHeld<MaterialKinds>(archive, material);
}

bool COrvelKeyFrameDataLight::WriteIntoArchive(COrvelArchiveBase& archive)
{
    return COrvelKeyFrameData::WriteIntoArchive(archive) && WriteHeld<LightKinds>(archive, light.get());
}

bool COrvelKeyFrameDataLight::ReadFromArchive(COrvelArchiveBase& archive)
{
    return COrvelKeyFrameData::ReadFromArchive(archive) && ReadHeld<LightKinds>(archive, light);
}

} // namespace Orvel
