#include "tool/pdf/PdfModels.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>

/// Finds and unpacks the models of PDF files that the fuzzer makes up. Whatever is wrong with one is told by PdfError.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const int file = memfd_create("fuzzed.pdf", 0);
    static const std::string path = "/proc/self/fd/" + std::to_string(file);
    if (ftruncate(file, 0) != 0 || pwrite(file, data, size, 0) != static_cast<ssize_t>(size))
        std::abort();
    constexpr std::uint64_t limit = 1 << 20;
    try {
        Orvel::Pdf::PdfModels models(path, "secret");
        for (std::size_t stream = 0; stream < models.Streams().size() && stream < 8; ++stream) {
            if (models.Bytes(stream, limit).size() > limit)
                std::abort();
        }
        models.TakeWarnings();
    } catch (const Orvel::Pdf::PdfError&) {
        return 0;
    }
    return 0;
}
