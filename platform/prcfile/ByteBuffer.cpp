#include "platform/prcfile/ByteBuffer.h"

#include <new>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace prc
{

namespace
{

/// Asks for huge pages where the kernel gives them only to those who ask: a big section is written once from end to
/// end, and a page fault for each 4 KiB costs as much as the bits themselves. A refusal changes nothing but the speed.
void askForHugePages([[maybe_unused]] std::uint8_t* memory, [[maybe_unused]] std::size_t size)
{
#ifdef __linux__
    constexpr std::size_t hugePage = std::size_t{2} << 20U;
    void* whole = memory; // huge pages that lie in it as a whole: small blocks have none
    if (std::align(hugePage, hugePage, whole, size) != nullptr)
        madvise(whole, size - size % hugePage, MADV_HUGEPAGE);
#endif
}

} // namespace

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
    askForHugePages(bytes.get(), length);
}

} // namespace prc
