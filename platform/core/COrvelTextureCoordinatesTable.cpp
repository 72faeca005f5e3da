#include "platform/core/COrvelTextureCoordinatesTable.h"

#include "platform/core/COrvel3DObject.h"

#include <utility>

namespace Orvel
{

namespace
{

constexpr std::size_t valuesPerEntry = 2;

} // namespace

COrvelTextureCoordinatesTable::COrvelTextureCoordinatesTable(COrvelDocument* document)
    : COrvelEntity(document, eEntityType_TextureCoordinatesTable)
    , objectsUsingThis(*this)
{}

COrvelTextureCoordinatesTable::~COrvelTextureCoordinatesTable() = default;

COrvelTextureCoordinatesTable* COrvelTextureCoordinatesTable::Create(COrvelDocument* document,
                                                                     std::vector<double> values)
{
    values.resize(values.size() - values.size() % valuesPerEntry);
    COrvelTextureCoordinatesTable* const table = new COrvelTextureCoordinatesTable(document);
    table->SetValues(std::move(values));
    return table;
}

std::uint64_t COrvelTextureCoordinatesTable::Count() const
{
    return values.size() / valuesPerEntry;
}

COrvelTextureCoordinate COrvelTextureCoordinatesTable::Item(std::uint64_t index) const
{
    const double* const entry = values.data() + valuesPerEntry * index;
    return COrvelTextureCoordinate(entry[0], entry[1]);
}

std::span<const double> COrvelTextureCoordinatesTable::Values() const
{
    return values;
}

bool COrvelTextureCoordinatesTable::SetValues(std::vector<double> newValues)
{
    if (newValues.size() % valuesPerEntry != 0)
        return false;
    values = std::move(newValues);
    return true;
}

void COrvelTextureCoordinatesTable::Reserve(std::uint64_t count)
{
    values.reserve(valuesPerEntry * count);
}

void COrvelTextureCoordinatesTable::Add(const COrvelTextureCoordinate& coordinate)
{
    values.insert(values.end(), {coordinate.U(), coordinate.V()});
}

} // namespace Orvel
