#pragma once

#include "platform/core/COrvelReferenced.h"
#include "platform/core/Export.h"

namespace Orvel
{

/// A reference-counted object that can be copied and restored from such a copy.
///
/// Its virtual functions follow those of COrvelArchivable, in this order.
class ORVEL_CORE_API COrvelObject : public COrvelReferenced
{
public:
    /// @return a new copy with reference count 0, owned by the caller; null when the class makes none.
    virtual COrvelObject* MakeCopy();
    /// Takes over the state of `copy`, which stays the caller's.
    virtual void RestoreFromCopy(COrvelObject* copy);
};

} // namespace Orvel
