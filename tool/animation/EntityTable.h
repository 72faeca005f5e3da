#pragma once

#include "platform/core/COrvelID.h"
#include "platform/core/COrvelString.h"
#include "platform/core/COrvelUUID.h"

#include <vector>

namespace Orvel
{
class COrvelArchiveBase;
class COrvelDocument;
} // namespace Orvel

namespace Orvel::Animate
{

/// An entity as an animation file names it.
struct EntityRecord
{
    COrvelID id; ///< its type says what kind of entity it is
    COrvelString place;
    COrvelUUID guid;

    bool ArchiveReadWrite(COrvelArchiveBase& archive);
};

using EntityTable = std::vector<EntityRecord>;

/// Every entity of a document that animation can be about, the same in the same order whenever the same scene is read.
///
/// First the tree, depth first: each node, its transform, and what it shows, all with the names of the nodes from the
/// root down as their place. Then, in the order of their creation, materials that nothing shows, by their names. What a
/// document makes for itself when it is asked is left out.
[[nodiscard]] EntityTable ListEntities(const COrvelDocument& document);

[[nodiscard]] bool ArchiveEntities(COrvelArchiveBase& archive, EntityTable& entities);

/// Has ids and GUIDs that are read from now on translated to those of the scene (COrvelDocumentsContainer).
///
/// @throws ImportError naming the first difference when the two tables are not of the same scene.
void ReplaceEntities(const EntityTable& stored, const EntityTable& present);

} // namespace Orvel::Animate
