#include "platform/core/COrvelReferenced.h"

#include <cassert>

namespace Orvel
{

void COrvelReferenced::DecrementReferenceCount()
{
    assert(referenceCount > 0 && "a reference is dropped only by one who held it");
    if (--referenceCount == 0)
        delete this;
}

} // namespace Orvel
