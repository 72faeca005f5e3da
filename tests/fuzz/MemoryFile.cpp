#include "tests/fuzz/MemoryFile.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>

namespace Orvel::Test
{

MemoryFile::MemoryFile()
    : path("/proc/self/fd/" + std::to_string(number))
{
    const int file = memfd_create("fuzzed", 0);
    if (file < 0 || dup2(file, number) != number || close(file) != 0)
        std::abort();
}

void MemoryFile::Fill(const std::uint8_t* data, std::size_t size) const
{
    if (ftruncate(number, 0) != 0 || pwrite(number, data, size, 0) != static_cast<ssize_t>(size))
        std::abort();
}

} // namespace Orvel::Test
