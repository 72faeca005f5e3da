#pragma once

#include "platform/core/COrvel3DVertex.h"
#include "platform/core/COrvelEntity.h"
#include "platform/core/COrvelUsers.h"
#include "platform/core/Export.h"

#include <cstdint>
#include <span>
#include <vector>

namespace Orvel
{

class COrvelBasicVectorsTable;
class COrvelGeometry;

/// A table of 3D vectors: the positions or the normals of a geometry. Its id is what vertex animation is filed under.
///
/// Three doubles per entry stand one after another in one array. A subclass may hold its entries otherwise: it
/// overrides Count and Item, and Values with an empty answer.
class ORVEL_CORE_API COrvel3DVectorsTable : public COrvelEntity
{
public:
    ~COrvel3DVectorsTable() override;

    virtual std::uint64_t Count() const;
    /// @param index below Count().
    virtual COrvel3DVertex Item(std::uint64_t index) const;
    /// All entries, x y z of entry 0, then of entry 1; valid until the table changes. Empty when the table has no such
    /// array, whatever its Count.
    virtual std::span<const double> Values() const;

    /// Replaces all entries.
    ///
    /// @param newValues three doubles per entry.
    /// @return false, and nothing changes, when the length is no multiple of 3.
    bool SetValues(std::vector<double> newValues);
    void Reserve(std::uint64_t count);
    void Add(const COrvel3DVertex& vector);
    /// Copies the positions of `table`, which stays the caller's; null changes nothing.
    void ReplaceBasicTable(const COrvelBasicVectorsTable* table);

    /// Replaces `geometries` with those whose positions or normals this table is, each once.
    void ListGeometriesReferencingThisTable(std::vector<COrvelGeometry*>& geometries) const;

protected:
    explicit COrvel3DVectorsTable(COrvelDocument* document);

private:
    friend class COrvelGeometry;

    std::vector<double> values;
    COrvelUsers<COrvelGeometry, COrvel3DVectorsTable> geometriesUsingThis;
};

/// The positions of a geometry's vertices, in the coordinates of the objects that show it.
class ORVEL_CORE_API COrvelVerticiesTable : public COrvel3DVectorsTable
{
public:
    /// @param values three doubles per vertex; an incomplete last vertex is dropped.
    static COrvelVerticiesTable* Create(COrvelDocument* document, std::vector<double> values = {});

protected:
    explicit COrvelVerticiesTable(COrvelDocument* document);
};

/// The normals of a geometry: entry k belongs to vertex k.
class ORVEL_CORE_API COrvelVerticiesNormalsTable : public COrvel3DVectorsTable
{
public:
    /// @param values three doubles per normal; an incomplete last normal is dropped.
    static COrvelVerticiesNormalsTable* Create(COrvelDocument* document, std::vector<double> values = {});

protected:
    explicit COrvelVerticiesNormalsTable(COrvelDocument* document);
};

} // namespace Orvel
