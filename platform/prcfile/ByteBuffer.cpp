#include "platform/prcfile/ByteBuffer.h"

#include <new>

namespace prc
{

void ByteBuffer::resize(std::size_t newSize)
{
    if (newSize == 0) {
        bytes.reset();
        length = 0;
        return;
    }
    void* const moved = std::realloc(bytes.get(), newSize);
    if (moved == nullptr)
        throw std::bad_alloc();
    static_cast<void>(bytes.release()); // realloc has freed or kept it
    bytes.reset(static_cast<std::uint8_t*>(moved));
    length = newSize;
}

} // namespace prc
