#include "platform/core/COrvel3DVectorsTable.h"

#include "platform/core/COrvelBasicVectorsTable.h"
#include "platform/core/COrvelGeometry.h"

#include <utility>

namespace Orvel
{

namespace
{

constexpr std::size_t valuesPerEntry = 3;

void DropIncompleteEntry(std::vector<double>& values)
{
    values.resize(values.size() - values.size() % valuesPerEntry);
}

} // namespace

COrvel3DVectorsTable::COrvel3DVectorsTable(COrvelDocument* document)
    : COrvelEntity(document, eEntityType_VectorsTable)
    , geometriesUsingThis(*this)
{}

COrvel3DVectorsTable::~COrvel3DVectorsTable() = default;

std::uint64_t COrvel3DVectorsTable::Count() const
{
    return values.size() / valuesPerEntry;
}

COrvel3DVertex COrvel3DVectorsTable::Item(std::uint64_t index) const
{
    const double* const entry = values.data() + valuesPerEntry * index;
    return COrvel3DVertex(entry[0], entry[1], entry[2]);
}

std::span<const double> COrvel3DVectorsTable::Values() const
{
    return values;
}

bool COrvel3DVectorsTable::SetValues(std::vector<double> newValues)
{
    if (newValues.size() % valuesPerEntry != 0)
        return false;
    values = std::move(newValues);
    return true;
}

void COrvel3DVectorsTable::Reserve(std::uint64_t count)
{
    values.reserve(valuesPerEntry * count);
}

void COrvel3DVectorsTable::Add(const COrvel3DVertex& vector)
{
    values.insert(values.end(), {vector.X(), vector.Y(), vector.Z()});
}

void COrvel3DVectorsTable::ReplaceBasicTable(const COrvelBasicVectorsTable* table)
{
    if (!table)
        return;
    std::vector<double> copied;
    copied.reserve(valuesPerEntry * table->Count());
    for (const COrvel3DVertex& item : table->Items())
        copied.insert(copied.end(), {item.X(), item.Y(), item.Z()});
    values = std::move(copied);
}

void COrvel3DVectorsTable::ListGeometriesReferencingThisTable(std::vector<COrvelGeometry*>& geometries) const
{
    geometries.assign(geometriesUsingThis.begin(), geometriesUsingThis.end());
}

COrvelVerticiesTable::COrvelVerticiesTable(COrvelDocument* document)
    : COrvel3DVectorsTable(document)
{}

COrvelVerticiesTable* COrvelVerticiesTable::Create(COrvelDocument* document, std::vector<double> values)
{
    DropIncompleteEntry(values);
    COrvelVerticiesTable* const table = new COrvelVerticiesTable(document);
    table->SetValues(std::move(values));
    return table;
}

COrvelVerticiesNormalsTable::COrvelVerticiesNormalsTable(COrvelDocument* document)
    : COrvel3DVectorsTable(document)
{}

COrvelVerticiesNormalsTable* COrvelVerticiesNormalsTable::Create(COrvelDocument* document, std::vector<double> values)
{
    DropIncompleteEntry(values);
    COrvelVerticiesNormalsTable* const table = new COrvelVerticiesNormalsTable(document);
    table->SetValues(std::move(values));
    return table;
}

} // namespace Orvel
