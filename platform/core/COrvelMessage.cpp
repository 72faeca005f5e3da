#include "platform/core/COrvelMessage.h"

#include <algorithm>

namespace Orvel
{

COrvelMessage::COrvelMessage(COrvelString newType)
    : type(std::move(newType))
{}

COrvelMessage::COrvelMessage(const COrvelMessage& other)
    : type(other.type)
{
    values.reserve(other.values.size());
    for (const std::unique_ptr<COrvelVariant>& value : other.values)
        values.push_back(value->Clone());
}

COrvelMessage& COrvelMessage::operator=(COrvelMessage other) noexcept
{
    std::swap(type, other.type);
    std::swap(values, other.values);
    return *this;
}

COrvelMessage::~COrvelMessage() = default;

void COrvelMessage::AddValue(std::unique_ptr<COrvelVariant> value)
{
    if (value)
        values.push_back(std::move(value));
}

const COrvelVariant* COrvelMessage::FindValue(const COrvelString& name) const
{
    const auto found = std::find_if(values.begin(), values.end(), [&name](const std::unique_ptr<COrvelVariant>& value) {
        return value->Name() == name;
    });
    return found == values.end() ? nullptr : found->get();
}

} // namespace Orvel
