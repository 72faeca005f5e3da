#pragma once

#include "platform/core/COrvelString.h"

#include <map>

namespace Orvel
{

/// Makes objects by the name of their kind, as archives store it.
template <class Base>
class KindRegistry
{
public:
    using Factory = Base* (*)();

    void Register(const COrvelString& kind, Factory factory) { factories.insert_or_assign(kind, factory); }
    /// @return new, owned by the caller; null for an unknown kind.
    Base* Create(const COrvelString& kind) const
    {
        const auto found = factories.find(kind);
        return found == factories.end() ? nullptr : found->second();
    }

private:
    std::map<COrvelString, Factory> factories;
};

} // namespace Orvel
