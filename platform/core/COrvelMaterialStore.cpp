#include "platform/core/COrvelMaterialStore.h"

#include "platform/core/COrvelMaterial.h"

#include <cstddef>
#include <new>

namespace Orvel
{

/// Stands before its places in one piece of memory. Each place begins with the address of its block.
struct COrvelMaterialStore::Block
{
    std::size_t places = 0;
    std::size_t used = 0;
    std::size_t live = 0;
    bool open = true;
};

namespace
{

constexpr std::size_t alignment = alignof(std::max_align_t);
static_assert(alignof(COrvelMaterial) <= alignment);

constexpr std::size_t Aligned(std::size_t size)
{
    return (size + alignment - 1) / alignment * alignment;
}

constexpr std::size_t prefixSize = Aligned(sizeof(void*));
constexpr std::size_t placeSize = prefixSize + Aligned(sizeof(COrvelMaterial));
constexpr std::size_t smallestBlock = 64;

} // namespace

COrvelMaterialStore::~COrvelMaterialStore()
{
    CloseBlock();
}

void COrvelMaterialStore::Reserve(std::size_t count)
{
    if (!current || current->places - current->used < count)
        OpenBlock(count);
}

void* COrvelMaterialStore::Allocate()
{
    if (!current || current->used == current->places)
        OpenBlock(current ? 2 * current->places : smallestBlock);
    char* const place = reinterpret_cast<char*>(current) + Aligned(sizeof(Block)) + placeSize * current->used;
    ::new (place) Block*(current);
    ++current->used;
    ++current->live;
    return place + prefixSize;
}

void COrvelMaterialStore::Free(void* place)
{
    Block* const block = *reinterpret_cast<Block**>(static_cast<char*>(place) - prefixSize);
    --block->live;
    if (block->live == 0 && !block->open)
        ::operator delete(block);
}

void COrvelMaterialStore::OpenBlock(std::size_t places)
{
    void* const memory = ::operator new(Aligned(sizeof(Block)) + placeSize * places);
    CloseBlock();
    current = ::new (memory) Block;
    current->places = places;
}

void COrvelMaterialStore::CloseBlock()
{
    if (!current)
        return;
    current->open = false;
    if (current->live == 0)
        ::operator delete(current);
    current = nullptr;
}

} // namespace Orvel
