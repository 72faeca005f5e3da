#include "platform/core/COrvelObject.h"

namespace Orvel
{

COrvelObject* COrvelObject::MakeCopy()
{
    return nullptr;
}

void COrvelObject::RestoreFromCopy(COrvelObject*) {}

} // namespace Orvel
