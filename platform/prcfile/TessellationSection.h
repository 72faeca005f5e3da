#pragma once

#include "platform/prcfile/BoundingBox.h"
#include "platform/prcfile/NullIndex.h"
#include "platform/prcfile/PRC3DTess.h"
#include "platform/prcfile/SectionWriter.h"

#include <cstdint>
#include <span>
#include <vector>

namespace prc
{

/// What the rest of a file has to know of a tessellation once it is encoded.
struct TessellationSummary
{
    BoundingBox box; ///< of all points.
    /// The style of the first face when every face has one of its own, else nullIndex.
    std::uint32_t ownStyle = nullIndex;
};

/// The section of a file that holds the tessellations. Each is encoded when it is added; nothing else of it is kept.
class TessellationSection
{
public:
    TessellationSection();

    /// @param tess complete and consistent, see checkTessellation().
    /// @return its number. std::bad_alloc leaves the section unchanged.
    std::uint32_t add(const PRC3DTess& tess);

    [[nodiscard]] const std::vector<TessellationSummary>& summaries() const { return tessellations; }

    /// Ends the section and returns its bytes, valid as long as the section. Called once.
    [[nodiscard]] std::span<const std::uint8_t> close();

private:
    SectionWriter bits;
    std::vector<TessellationSummary> tessellations;
};

} // namespace prc
