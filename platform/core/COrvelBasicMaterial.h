#pragma once

#include "platform/core/COrvelDataMembersManager.h"
#include "platform/core/COrvelStructureDescription.h"
#include "platform/core/Export.h"

#include <vector>

namespace Orvel
{

class COrvelBasicGeneralMaterial;

/// The looks of a surface, as a value with a name: base of all kinds of materials.
class ORVEL_CORE_API COrvelBasicMaterial : public COrvelDataMembersManager
{
public:
    using Factory = COrvelBasicMaterial* (*)();

    /// @return a new copy, owned by the caller.
    virtual COrvelBasicMaterial* Clone() const = 0;
    /// Name of the class of looks, by which CreateBasicMaterial makes an empty one.
    virtual COrvelString KindName() const = 0;
    /// These looks in terms of colours and opacity. Owned by this material and valid until it changes; never null.
    virtual COrvelBasicGeneralMaterial* ApproximateToGeneralMaterial() = 0;

    COrvelObject* MakeCopy() override;

    /// A blend of two materials: colours and numbers linearly, name, textures and whatever else has no middle from the
    /// nearer end (`from` below t = 0.5, `to` from there on). Materials of different kinds are blended as general ones.
    ///
    /// @param t 0 for `from`, 1 for `to`.
    /// @return new, owned by the caller; null when an end is null.
    static COrvelBasicMaterial* Interpolate(const COrvelBasicMaterial* from, const COrvelBasicMaterial* to, double t);

    /// @return a new material of that kind, owned by the caller; null for an unknown kind.
    static COrvelBasicMaterial* CreateBasicMaterial(const COrvelString& kind);
    /// Makes a further kind known to CreateBasicMaterial; the last registration of a name counts.
    static void RegisterKind(const COrvelString& kind, Factory factory);

    // --- archive
    //
    // A holder stores the kind name, the embedded structures, the structure description and then the material itself.

    /// Structures nested in this one. There are none: their number, 0, is stored.
    ///
    /// @return false when an archive holds some.
    static bool ArchiveEmbeddedStructure(COrvelArchiveBase& archive);
    /// The stored fields of this material, in their order: what a reader that lacks this kind goes by.
    COrvelStructureDescription StructureDescription();
    /// Reads a material of any kind: fields that this material has under the same name and type take their values,
    /// others are passed over.
    bool ReadDescribed(COrvelArchiveBase& archive, const COrvelStructureDescription& description);

    /// Name, display name, then the fields.
    bool ReadFromArchive(COrvelArchiveBase& archive) override;
    bool WriteIntoArchive(COrvelArchiveBase& archive) override;

protected:
    COrvelBasicMaterial() = default;
    COrvelBasicMaterial(const COrvelBasicMaterial&) = default;
    COrvelBasicMaterial& operator=(const COrvelBasicMaterial&) = default;

    /// Appends the values that make up the looks: they are what is stored and what a blend works on.
    virtual void ListFields(std::vector<COrvelField>& fields) = 0;
    /// ListFields, as a result.
    std::vector<COrvelField> Fields();
};

} // namespace Orvel
