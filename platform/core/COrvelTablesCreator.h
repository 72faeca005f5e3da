#pragma once

#include "platform/core/Export.h"

namespace Orvel
{

class COrvelBasicVectorsTable;

/// Makes the basic tables that archive readers fill.
class ORVEL_CORE_API COrvelTablesCreator
{
public:
    /// @return a new table without entries, owned by the caller.
    static COrvelBasicVectorsTable* CreateVectorsTable();
};

} // namespace Orvel
