// The program's operator new: large blocks ask the kernel for huge pages.
//
// Big meshes are written once from end to end, and then a page fault for each 4 KiB costs as much as the work itself.
// The kernel of many systems gives huge pages only to those who ask (/sys/kernel/mm/transparent_hugepage/enabled says
// "madvise" there). This is the program's business alone: the libraries leave the host's operator new as it is.
#include <sys/mman.h>

#include <cstddef>
#include <cstdlib>
#include <new>

namespace
{

constexpr std::size_t HugePage = std::size_t{2} << 20U;

/// Smaller blocks come and go in the allocator's own pages, which are used again.
constexpr std::size_t LeastSize = 2 * HugePage;

void* Allocate(std::size_t size)
{
    if (size < LeastSize)
        return std::malloc(size > 0 ? size : 1);
    void* const block = std::aligned_alloc(HugePage, size);
    // The last page stays small unless it is full, so that no memory is taken beyond the block. The kernel may refuse.
    if (block != nullptr)
        madvise(block, size - size % HugePage, MADV_HUGEPAGE);
    return block;
}

} // namespace

void* operator new(std::size_t size)
{
    for (;;) {
        if (void* const block = Allocate(size))
            return block;
        const std::new_handler handler = std::get_new_handler();
        if (handler == nullptr)
            throw std::bad_alloc();
        handler();
    }
}

void operator delete(void* block) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept
{
    std::free(block);
}
