#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>

namespace prc
{

/// Raw bytes that grow without being cleared or, where the system can remap memory, copied. Room that was reserved but
/// never written costs address space only.
class ByteBuffer
{
public:
    ByteBuffer() = default;

    /// @throws std::bad_alloc
    explicit ByteBuffer(std::size_t size) { resize(size); }

    [[nodiscard]] std::uint8_t* data() { return bytes.get(); }
    [[nodiscard]] const std::uint8_t* data() const { return bytes.get(); }
    [[nodiscard]] std::size_t size() const { return length; }
    [[nodiscard]] std::span<const std::uint8_t> view() const { return {bytes.get(), length}; }

    /// Keeps the bytes up to the smaller of both sizes; those beyond are uninitialised.
    ///
    /// @throws std::bad_alloc, with the buffer unchanged.
    void resize(std::size_t newSize);

private:
    struct Free
    {
        void operator()(std::uint8_t* memory) const { std::free(memory); }
    };

    std::unique_ptr<std::uint8_t, Free> bytes;
    std::size_t length = 0;
};

} // namespace prc
