#pragma once

#include "platform/core/Types.h"
#include "platform/prcfile/PRCmaterial.h"
#include "prc/TexturePicture.h"

namespace Orvel
{

class COrvel3DObject;
class COrvelBasicMaterial;
class COrvelPRCHandler;

/// A material ready for `oPRCFile::addMaterial`, with the pixels that its record points at.
struct MaterialRecord
{
    prc::PRCmaterial record;
    std::shared_ptr<const std::uint8_t[]> pixels; ///< keeps record's picture alive; null without one
};

/// Fills the record of a mesh object's material. Its ambient alpha is lowered by an offset that grows by 0.01 with
/// every call in the process and is never reset, so that no two meshes' materials are equal.
///
/// Without a texture the mesh needs no texture coordinates: the count becomes 0 and both arrays null.
///
/// @param converter gives the limit for the picture's size.
/// @param textureCoordinateCount, textureCoordinates, textureCoordinateIndices in and out, as above.
void MakeMeshMaterial(const COrvelPRCHandler& converter, MaterialRecord& material, COrvel3DObject* object,
                      uint32& textureCoordinateCount, const double*& textureCoordinates,
                      const uint32*& textureCoordinateIndices);

/// Fills the record of a material that a scene state puts in another one's place: diffuse alpha lowered by 0.0001.
/// @param replacement not null.
void MakeReplacementMaterial(const COrvelPRCHandler& converter, MaterialRecord& material,
                             COrvelBasicMaterial* replacement);

} // namespace Orvel
