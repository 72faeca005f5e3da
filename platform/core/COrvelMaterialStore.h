#pragma once

#include <cstddef>

namespace Orvel
{

/// Where the materials of one document lie: a list of blocks that are filled from their lower end, so that addresses
/// rise in the order of creation as far as one block reaches. A place is never used twice: maps keyed by a material's
/// address cannot mistake a new material for a dead one.
///
/// A block lives until the store is gone and the last material in it is.
class COrvelMaterialStore
{
public:
    COrvelMaterialStore() = default;
    COrvelMaterialStore(const COrvelMaterialStore&) = delete;
    COrvelMaterialStore& operator=(const COrvelMaterialStore&) = delete;
    ~COrvelMaterialStore();

    /// Sees to it that the next `count` places lie in one block.
    void Reserve(std::size_t count);
    void* Allocate();
    static void Free(void* place);

private:
    struct Block;

    void OpenBlock(std::size_t places);
    void CloseBlock();

    Block* current = nullptr;
};

} // namespace Orvel
