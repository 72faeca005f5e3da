#pragma once

#include "platform/core/COrvelDefinedVariant.h"
#include "platform/core/COrvelString.h"
#include "platform/core/Export.h"

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace Orvel
{

/// A request or a notice: a type, and named values in the order in which they were added.
class ORVEL_CORE_API COrvelMessage
{
public:
    explicit COrvelMessage(COrvelString type);
    /// Copies the values too.
    COrvelMessage(const COrvelMessage& other);
    COrvelMessage(COrvelMessage&&) noexcept = default;
    COrvelMessage& operator=(COrvelMessage other) noexcept;
    ~COrvelMessage();

    const COrvelString& Type() const { return type; }

    /// Takes a value over; null is ignored.
    void AddValue(std::unique_ptr<COrvelVariant> value);
    template <class T>
    void AddValue(COrvelString name, T value)
    {
        AddValue(std::make_unique<COrvelDefinedVariant<T>>(std::move(name), std::move(value)));
    }

    std::size_t Count() const { return values.size(); }
    /// @param position below Count().
    COrvelVariant& Value(std::size_t position) { return *values[position]; }
    const COrvelVariant& Value(std::size_t position) const { return *values[position]; }
    /// The first value of that name; null when there is none.
    const COrvelVariant* FindValue(const COrvelString& name) const;
    /// The same, as its own type; null when there is none or when it is of another type.
    template <class T>
    const T* Find(const COrvelString& name) const
    {
        const auto* const found = dynamic_cast<const COrvelDefinedVariant<T>*>(FindValue(name));
        return found ? &found->Value() : nullptr;
    }

private:
    COrvelString type;
    std::vector<std::unique_ptr<COrvelVariant>> values;
};

} // namespace Orvel
