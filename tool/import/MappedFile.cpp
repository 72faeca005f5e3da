#include "tool/import/MappedFile.h"

#include "tool/import/ImportReport.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Orvel::Import
{

MappedFile::MappedFile(const std::filesystem::path& file)
{
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        throw ImportError("the file cannot be read");
    struct stat status
    {};
    bool mapped = ::fstat(descriptor, &status) == 0;
    if (mapped && status.st_size > 0) {
        size = static_cast<std::size_t>(status.st_size);
        data = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
        mapped = data != MAP_FAILED;
    }
    // The mapping outlives its descriptor.
    ::close(descriptor);
    if (!mapped)
        throw ImportError("the file cannot be read");
}

MappedFile::~MappedFile()
{
    if (data != nullptr)
        ::munmap(data, size);
}

} // namespace Orvel::Import
