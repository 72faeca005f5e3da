#pragma once

#include <memory>

namespace Orvel
{

/// A copy of a host's value (a material, a light), whatever its kind; null for null.
template <class Value>
[[nodiscard]] std::unique_ptr<Value> OwnedCopy(const Value* value)
{
    return std::unique_ptr<Value>(value ? value->Clone() : nullptr);
}

} // namespace Orvel
