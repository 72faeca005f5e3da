#pragma once

#include "animation/COrvelKeyFrameData.h"
#include "platform/core/COrvelBasicVectorsTable.h"

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace Orvel
{

/// The positions of a COrvel3DVectorsTable, one table for each frame of the range.
class ORVEL_ANIMATION_API COrvelKeyFrameDataVertices : public COrvelKeyFrameData
{
public:
    /// @param table copied, for the first frame; null for no table at all.
    /// @return new, reference count 0.
    static COrvelKeyFrameDataVertices* CreateVerticesKeyFrameData(const COrvelID& id,
                                                                  const COrvelBasicVectorsTable* table);

    bool ReadFromArchive(COrvelArchiveBase& archive) override;
    bool WriteIntoArchive(COrvelArchiveBase& archive) override;
    int Type() const override { return eKeyFrameDataType_Vertices; }
    void RestoreEntity(COrvelKeyFrameManager*) override {}
    /// Replaces the positions of the animated table; nothing when there is no table for the frame.
    void ApplyToEntity() override;
    COrvelKeyFrameDataVertices* Clone(bool atWorkingFrame) const override;

    /// The table for EffectiveFrame(); owned by this data, null outside the list of tables.
    COrvelBasicVectorsTable* TableAtWorkingFrame() const;
    std::size_t TableCount() const { return tables.size(); }
    /// Appends the table for the next frame. Null leaves that frame without one.
    void AddTable(std::unique_ptr<COrvelBasicVectorsTable> table) { tables.push_back(std::move(table)); }
    void RemoveTables() { tables.clear(); }

protected:
    explicit COrvelKeyFrameDataVertices(const COrvelID& id);
    COrvelKeyFrameDataVertices(const COrvelKeyFrameDataVertices& other);

private:
    std::vector<std::unique_ptr<COrvelBasicVectorsTable>> tables;
};

} // namespace Orvel
