#pragma once

#include "platform/core/COrvelSceneNode.h"
#include "platform/core/COrvelUsers.h"
#include "platform/core/Export.h"

#include <memory>
#include <vector>

namespace Orvel
{

class COrvelGeometry;
class COrvelMaterial;
class COrvelMorphingTable;
class COrvelTextureCoordinatesTable;

/// A scene node that shows a geometry in a material. Objects that show the same geometry are instances of each other.
class ORVEL_CORE_API COrvel3DObject : public COrvelSceneNode
{
public:
    static COrvel3DObject* Create(COrvelDocument* document, COrvelString name = {}, COrvelGeometry* geometry = nullptr,
                                  COrvelMaterial* material = nullptr);
    ~COrvel3DObject() override;

    // --- shape

    /// Null when there is none.
    COrvelGeometry* Geometry() const { return geometry.Get(); }
    /// @param newGeometry not owned; null for none.
    void SetGeometry(COrvelGeometry* newGeometry);
    /// Null when there is none. Entry k belongs to vertex k of the geometry.
    COrvelTextureCoordinatesTable* TextureCoordinatesTable() const { return textureCoordinates.Get(); }
    /// @param table not owned, may serve several objects; null for none.
    void SetTextureCoordinatesTable(COrvelTextureCoordinatesTable* table);
    /// Equal exactly for objects that show the same geometry; empty without one.
    COrvelString GeometyDefinitionID() const;
    /// Replaces `objects` with the objects that show this object's geometry, in the order in which they took it. An
    /// object without geometry is its own only instance.
    ///
    /// @param includeThis    false leaves out this object.
    /// @param includeDeleted false leaves out deleted objects, this one included.
    /// @param includeHidden  false leaves out hidden objects, this one included.
    void ListInstances(std::vector<COrvel3DObject*>& objects, bool includeThis, bool includeDeleted,
                       bool includeHidden);

    // --- appearance

    /// The object's own material or, without one, its document's default material. Never null.
    COrvelMaterial* Material() const;
    /// @param newMaterial not owned; null for the document's default material.
    void SetMaterial(COrvelMaterial* newMaterial);
    bool HasOwnMaterial() const { return material.Get() != nullptr; }

    // --- morphing

    /// True when there is a morphing table with at least one target.
    bool HasMorphingGeometry() const;
    /// Null without morphing; owned by the object.
    COrvelMorphingTable* MorphingTable() const { return morphingTable.get(); }
    /// The morphing table, made if there is none.
    COrvelMorphingTable* CreateMorphingTable();

protected:
    COrvel3DObject(COrvelDocument* document, COrvelString name);

private:
    COrvelUse<COrvel3DObject, COrvelGeometry> geometry;
    COrvelUse<COrvel3DObject, COrvelTextureCoordinatesTable> textureCoordinates;
    COrvelUse<COrvel3DObject, COrvelMaterial> material;
    std::unique_ptr<COrvelMorphingTable> morphingTable;
};

} // namespace Orvel
