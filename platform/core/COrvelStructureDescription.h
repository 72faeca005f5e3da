#pragma once

#include "platform/core/COrvelColor.h"
#include "platform/core/COrvelString.h"
#include "platform/core/COrvelTexture.h"
#include "platform/core/Export.h"

#include <map>
#include <optional>
#include <variant>
#include <vector>

namespace Orvel
{

class COrvelArchiveBase;

/// Textures by enumTextureType.
using COrvelTextures = std::map<int, COrvelTexture>;

/// One value of a material or light: its stored name and where it stands. The position of its type in the variant is
/// the type's number in archives.
struct COrvelField
{
    using Place = std::variant<bool*, double*, COrvelString*, COrvelColor*, std::optional<double>*, COrvelTextures*>;

    const char* name;
    Place place;
};

/// Stores fields one after another.
ORVEL_CORE_API bool ArchiveFields(COrvelArchiveBase& archive, const std::vector<COrvelField>& fields);

/// Moves values towards others: numbers and colours linearly, everything else by taking the other's value from t = 0.5
/// on. A number that may be missing counts as 1 where it is.
///
/// @param fields of one object.
/// @param to     of another object of the same class; not changed.
ORVEL_CORE_API void BlendFields(const std::vector<COrvelField>& fields, const std::vector<COrvelField>& to, double t);

/// Names and types of stored fields. With it a reader that does not know the class finds its way through the record.
class ORVEL_CORE_API COrvelStructureDescription
{
public:
    COrvelStructureDescription() = default;
    explicit COrvelStructureDescription(const std::vector<COrvelField>& fields);

    bool ArchiveReadWrite(COrvelArchiveBase& archive);
    /// Reads a record that is laid out like this. Values whose name and type match a field of `known` go there, the
    /// others are dropped.
    bool ReadInto(COrvelArchiveBase& archive, const std::vector<COrvelField>& known) const;

private:
    struct Entry
    {
        COrvelString name;
        int type = 0;
    };

    std::vector<Entry> entries;
};

} // namespace Orvel
