#pragma once

#include "platform/core/COrvelArchivable.h"
#include "platform/core/Export.h"

namespace Orvel
{

/// Intrusive reference count. It starts at 0: an object belongs to whoever made it until a COrvelPtr holds it.
class ORVEL_CORE_API COrvelReferenced : public COrvelArchivable
{
public:
    COrvelReferenced() = default;
    /// References count holders of one object, so a copy starts without any and an assignment changes nobody's count.
    COrvelReferenced(const COrvelReferenced& other)
        : COrvelArchivable(other)
    {}
    COrvelReferenced& operator=(const COrvelReferenced&) { return *this; }

    void IncrementReferenceCount() { ++referenceCount; }
    /// Destroys the object, through its virtual destructor, when the count reaches 0.
    void DecrementReferenceCount();
    int ReferenceCount() const { return referenceCount; }

private:
    int referenceCount = 0;
};

} // namespace Orvel
