#pragma once

#include "platform/core/COrvelString.h"
#include "platform/core/Export.h"

#include <memory>
#include <utility>

namespace Orvel
{

/// A value with a name, whatever its type: what a message carries.
class ORVEL_CORE_API COrvelVariant
{
public:
    virtual ~COrvelVariant();

    const COrvelString& Name() const { return name; }
    virtual std::unique_ptr<COrvelVariant> Clone() const = 0;

protected:
    explicit COrvelVariant(COrvelString newName)
        : name(std::move(newName))
    {}
    COrvelVariant(const COrvelVariant&) = default;
    COrvelVariant& operator=(const COrvelVariant&) = default;

private:
    COrvelString name;
};

/// A named value of type T. Of T it needs a copy and nothing else.
template <class T>
class COrvelDefinedVariant : public COrvelVariant
{
public:
    COrvelDefinedVariant(COrvelString newName, T newValue)
        : COrvelVariant(std::move(newName))
        , value(std::move(newValue))
    {}

    const T& Value() const { return value; }
    T& Value() { return value; }
    std::unique_ptr<COrvelVariant> Clone() const override { return std::make_unique<COrvelDefinedVariant>(*this); }

private:
    T value;
};

} // namespace Orvel
