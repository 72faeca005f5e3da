#pragma once

#include "platform/core/COrvelEntity.h"
#include "platform/core/COrvelUsers.h"
#include "platform/core/Export.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace Orvel
{

class COrvel3DObject;
class COrvelBasicGeneralMaterial;
class COrvelBasicMaterial;

/// A material of a document, shared by the objects that show it; its looks are a COrvelBasicMaterial.
///
/// Its address identifies it for its whole life, and the materials of one document are laid out so that addresses rise
/// in creation order (see COrvelDocument::ReserveMaterials).
class ORVEL_CORE_API COrvelMaterial final : public COrvelEntity
{
public:
    /// A material with the looks of a new general material.
    static COrvelMaterial* Create(COrvelDocument* document, COrvelString name = {});
    /// A material with a copy of these looks and their name.
    static COrvelMaterial* Create(COrvelDocument* document, const COrvelBasicMaterial& looks);
    ~COrvelMaterial() override;

    /// The looks themselves; never null, replaced by LoadBasicMaterial.
    COrvelBasicMaterial* BasicMaterial() const { return basicMaterial.get(); }
    /// The looks as a general material: never null, owned by this material, valid until it changes.
    COrvelBasicGeneralMaterial* ApproximateToOrvelGeneralMaterial() const;
    /// Takes over a copy of `looks`; null changes nothing.
    ///
    /// @param takeName true: the material takes the name of the looks as well.
    void LoadBasicMaterial(const COrvelBasicMaterial* looks, bool takeName);

    /// Every object that shows this material shows `other` from now on. Null and the material itself change nothing.
    void ReplaceWith(COrvelMaterial* other);
    /// A mark that nothing here looks at.
    void MarkAsHidden(bool hidden) { markedAsHidden = hidden; }
    bool IsMarkedAsHidden() const { return markedAsHidden; }

    /// Replaces `objects` with the objects that show this material, deleted and hidden ones included, each once. For a
    /// document's default material these are the objects without a material of their own as well.
    void GetObjectsReferencingThisMaterial(std::vector<COrvel3DObject*>& objects) const;

    /// Materials come from their document's store, which they keep alive when they outlive the document.
    static void* operator new(std::size_t size, COrvelDocument& document);
    static void operator delete(void* memory, COrvelDocument& document);
    static void operator delete(void* memory);

private:
    COrvelMaterial(COrvelDocument* document, std::unique_ptr<COrvelBasicMaterial> looks);

    friend class COrvel3DObject;

    std::unique_ptr<COrvelBasicMaterial> basicMaterial;
    COrvelUsers<COrvel3DObject, COrvelMaterial> objectsUsingThis;
    bool markedAsHidden = false;
};

} // namespace Orvel
