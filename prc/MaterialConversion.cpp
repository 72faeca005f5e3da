#include "prc/MaterialConversion.h"

#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelColor.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelTexture.h"
#include "platform/prcfile/oPRCFile.h"
#include "prc/COrvelPRCHandler.h"

#include <limits>

namespace Orvel
{

namespace
{

/// Which alpha a builder lowers, and by how much: it keeps the materials of the three builders apart.
struct LoweredAlpha
{
    prc::PRCcolor prc::PRCmaterial::*color;
    double amount;
};

/// Grows with every mesh material of the process and is never reset.
double ambientAlphaOffset = 0.0;

constexpr double AmbientAlphaStep = 0.01;
constexpr double AlphaStep = 0.0001;
constexpr double Shininess = 0.5;
constexpr auto BaseTexture = static_cast<enumTextureType>(1);

prc::PRCcolor ToPRC(const COrvelColor& color)
{
    return {color.R(), color.G(), color.B(), color.A()};
}

void SetPicture(MaterialRecord& material, const TexturePicture& picture)
{
    const std::uint64_t size = std::uint64_t{picture.width} * picture.height * picture.BytesPerPixel();
    // Only a negative size limit lets such pictures through. The record cannot count their bytes.
    if (size > std::numeric_limits<uint32>::max())
        return;
    material.pixels = picture.pixels;
    material.record.pictureData = picture.pixels.get();
    material.record.pictureFormat = static_cast<prc::PRCpictureFormat>(picture.format);
    material.record.pictureWidth = picture.width;
    material.record.pictureHeight = picture.height;
    material.record.pictureSize = static_cast<uint32>(size);
}

/// @return true when the material has a texture, whether or not its file could be loaded.
bool FillRecord(const COrvelPRCHandler& converter, MaterialRecord& material, COrvelBasicGeneralMaterial& general,
                LoweredAlpha lowered)
{
    prc::PRCmaterial& record = material.record;
    record = prc::PRCmaterial();
    record.ambient = ToPRC(general.AmbientColor());
    record.diffuse = ToPRC(general.DiffuseColor());
    record.emissive = ToPRC(general.EmissiveColor());
    record.specular = ToPRC(general.SpecularColor());
    (record.*lowered.color).alpha -= lowered.amount;
    record.alpha = general.HasOpacity() ? general.Opacity() : 1.0;
    record.shininess = Shininess;
    record.pictureReplace = false;

    const COrvelTexture& texture = general.Texture(BaseTexture, false);
    record.pictureRepeat = !texture.IsEmpty();
    TexturePicture picture;
    if (!texture.IsEmpty())
        LoadTexturePicture(converter, texture.FullFilename(false), picture);
    SetPicture(material, picture);
    return !texture.IsEmpty();
}

} // namespace

void MakeMeshMaterial(const COrvelPRCHandler& converter, MaterialRecord& material, COrvel3DObject* object,
                      uint32& textureCoordinateCount, const double*& textureCoordinates,
                      const uint32*& textureCoordinateIndices)
{
    ambientAlphaOffset += AmbientAlphaStep;
    COrvelBasicGeneralMaterial* const general = object->Material()->ApproximateToOrvelGeneralMaterial();
    const bool textured = FillRecord(converter, material, *general, {&prc::PRCmaterial::ambient, ambientAlphaOffset});
    if (!textured) {
        textureCoordinateCount = 0;
        textureCoordinates = nullptr;
        textureCoordinateIndices = nullptr;
    }
}

void MakeReplacementMaterial(const COrvelPRCHandler& converter, MaterialRecord& material,
                             COrvelBasicMaterial* replacement)
{
    FillRecord(converter, material, *replacement->ApproximateToGeneralMaterial(),
               {&prc::PRCmaterial::diffuse, AlphaStep});
}

bool COrvelPRCHandler::AddKeyFrameMaterial(COrvelBasicMaterial* material, uint32& index, prc::oPRCFile& file)
{
    MaterialRecord keyFrame;
    FillRecord(*this, keyFrame, *material->ApproximateToGeneralMaterial(), {&prc::PRCmaterial::emissive, AlphaStep});
    index = file.addMaterial(keyFrame.record);
    return true;
}

} // namespace Orvel
