#pragma once

#include "tool/import/GltfBuffers.h"
#include "tool/import/GltfDocument.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace Orvel::Import
{

/// Reads accessors: checks each against its view, undoes strides and normalisation, and applies sparse replacements.
///
/// Messages of the errors thrown name the accessor; callers add what it was for.
class GltfAccessors
{
public:
    /// The arguments are not owned and must outlive the object.
    /// @param fileSize bounds what accessors without any bytes behind them (all zeros) may add up to.
    GltfAccessors(const GltfDocument& document, GltfBuffers& buffers, std::size_t fileSize);

    /// The first accessor that means the same numbers: programs often write one anew for each use.
    /// @param accessor -1 gives -1.
    [[nodiscard]] int Canonical(int accessor) const;

    /// Number of elements, as the file says; not yet checked.
    [[nodiscard]] std::size_t Count(int accessor) const;

    /// Whether the numbers exist only in a compressed form that cannot be read.
    [[nodiscard]] bool IsCompressed(int accessor) const;

    /// Whether any bytes stand behind the accessor; without them it is all zeros.
    [[nodiscard]] bool HasBytes(int accessor) const;

    /// All numbers, `components` for each element, exactly as floats and integers convert to double. Normalised
    /// integers become 0 to 1, or -1 to 1, as the format says. Floats that are not finite come as they are.
    ///
    /// @param components 1 to 4: what the accessor's type must have.
    /// @throws ImportError when the type differs, or the range, the view or the buffer is at fault.
    [[nodiscard]] std::vector<double> Numbers(int accessor, int components);

    /// The numbers of some elements, as above, without decoding the others.
    /// @param elements ascending, each once, each below Count().
    [[nodiscard]] std::vector<double> Numbers(int accessor, int components, std::span<const std::uint32_t> elements);

    /// All numbers of an unsigned integer accessor of one component.
    /// @throws ImportError as Numbers() does.
    [[nodiscard]] std::vector<std::uint32_t> Indices(int accessor);

private:
    /// Elements in memory, one every `stride` bytes.
    struct Elements
    {
        const std::byte* data = nullptr; ///< null: all zeros
        std::size_t stride = 0;
        std::size_t count = 0;
    };

    template <typename Choice>
    std::vector<double> Decode(int accessor, int components, const Choice& choice);
    Elements Locate(int accessor, int components, std::size_t wanted);
    Elements Range(int view, std::size_t offset, std::size_t count, std::size_t elementSize, bool mayBeStrided,
                   int accessor);
    template <typename Choice>
    void ApplySparse(int accessor, int components, const Choice& choice, std::vector<double>& numbers);
    void SpendZeros(std::size_t numbers, int accessor);

    const GltfDocument& document;
    GltfBuffers& buffers;
    std::vector<int> canonical;
    std::size_t zerosLeft;
};

} // namespace Orvel::Import
