#pragma once

#include "platform/core/COrvelEntity.h"
#include "platform/core/COrvelTextureCoordinate.h"
#include "platform/core/COrvelUsers.h"
#include "platform/core/Export.h"

#include <cstdint>
#include <span>
#include <vector>

namespace Orvel
{

class COrvel3DObject;

/// Where the vertices of an object's geometry lie in its texture: entry k belongs to vertex k.
///
/// Two doubles per entry stand one after another in one array. A subclass may hold its entries otherwise: it overrides
/// Count and Item, and Values with an empty answer.
class ORVEL_CORE_API COrvelTextureCoordinatesTable : public COrvelEntity
{
public:
    /// @param values two doubles per entry; an incomplete last entry is dropped.
    static COrvelTextureCoordinatesTable* Create(COrvelDocument* document, std::vector<double> values = {});
    ~COrvelTextureCoordinatesTable() override;

    virtual std::uint64_t Count() const;
    /// @param index below Count().
    virtual COrvelTextureCoordinate Item(std::uint64_t index) const;
    /// All entries, u v of entry 0, then of entry 1; valid until the table changes. Empty when the table has no such
    /// array, whatever its Count.
    virtual std::span<const double> Values() const;

    /// Replaces all entries.
    ///
    /// @param newValues two doubles per entry.
    /// @return false, and nothing changes, when the length is odd.
    bool SetValues(std::vector<double> newValues);
    void Reserve(std::uint64_t count);
    void Add(const COrvelTextureCoordinate& coordinate);

protected:
    explicit COrvelTextureCoordinatesTable(COrvelDocument* document);

private:
    friend class COrvel3DObject;

    std::vector<double> values;
    COrvelUsers<COrvel3DObject, COrvelTextureCoordinatesTable> objectsUsingThis;
};

} // namespace Orvel
