#include "prc/ExportCaches.h"

namespace Orvel
{

void ExportCaches::Clear()
{
    tessellationByGeometry.clear();
    geometryByMaterial.clear();
    materialNumberCache.clear();
}

ExportCaches& ExportCaches::Instance()
{
    static ExportCaches caches;
    return caches;
}

} // namespace Orvel
