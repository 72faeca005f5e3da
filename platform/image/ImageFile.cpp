#include "platform/image/ImageFile.h"

#include "platform/core/COrvelString.h"

namespace Orvel::ImageFile
{

#if defined(_WIN32)

FREE_IMAGE_FORMAT FormatOfContent(const COrvelString& fileName)
{
    return FreeImage_GetFileTypeU(fileName.WideCString(), 0);
}

FREE_IMAGE_FORMAT FormatOfName(const COrvelString& fileName)
{
    return FreeImage_GetFIFFromFilenameU(fileName.WideCString());
}

Bitmap Load(FREE_IMAGE_FORMAT format, const COrvelString& fileName)
{
    return Bitmap(FreeImage_LoadU(format, fileName.WideCString(), 0));
}

#else

FREE_IMAGE_FORMAT FormatOfContent(const COrvelString& fileName)
{
    return FreeImage_GetFileType(fileName.CString(), 0);
}

FREE_IMAGE_FORMAT FormatOfName(const COrvelString& fileName)
{
    return FreeImage_GetFIFFromFilename(fileName.CString());
}

Bitmap Load(FREE_IMAGE_FORMAT format, const COrvelString& fileName)
{
    return Bitmap(FreeImage_Load(format, fileName.CString(), 0));
}

#endif

Bitmap Decode(FREE_IMAGE_FORMAT format, std::span<const std::uint8_t> file)
{
    // Memory that is opened for reading only is never written to, whatever the parameter's type says.
    auto* const bytes = const_cast<BYTE*>(file.data());
    FIMEMORY* const memory = FreeImage_OpenMemory(bytes, static_cast<DWORD>(file.size()));
    Bitmap bitmap(FreeImage_LoadFromMemory(format, memory, 0));
    FreeImage_CloseMemory(memory);
    return bitmap;
}

} // namespace Orvel::ImageFile
