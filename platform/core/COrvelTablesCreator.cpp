#include "platform/core/COrvelTablesCreator.h"

#include "platform/core/COrvelBasicVectorsTable.h"

namespace Orvel
{

COrvelBasicVectorsTable* COrvelTablesCreator::CreateVectorsTable()
{
    return new COrvelBasicVectorsTable;
}

} // namespace Orvel
