#pragma once

#include "platform/core/COrvelString.h"
#include "platform/core/Types.h"

#include <map>

namespace Orvel
{

class COrvelMaterial;

/// What the traversal and the mesh extraction remember of the PRC file that is being written. Process-wide; empty
/// between runs. Holds values only, so its destruction at the end of the process needs nobody.
struct ExportCaches
{
    /// Geometry definition id -> PRC tessellation index, for geometry that several objects share.
    std::map<COrvelString, uint32> tessellationByGeometry;
    /// Host material -> the geometry definition id last cached with it.
    std::map<COrvelMaterial*, COrvelString> geometryByMaterial;
    /// Host material -> its material number in this file.
    std::map<COrvelMaterial*, uint32> materialNumberCache;

    void Clear();

    /// The caches of the process.
    static ExportCaches& Instance();
};

} // namespace Orvel
