#include "tests/fuzz/MemoryFile.h"
#include "tool/pdf/PdfModels.h"

#include <cstdint>
#include <cstdlib>

/// Finds and unpacks the models of PDF files that the fuzzer makes up. Whatever is wrong with one is told by PdfError.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const Orvel::Test::MemoryFile file;
    file.Fill(data, size);
    constexpr std::uint64_t limit = 1 << 20;
    try {
        Orvel::Pdf::PdfModels models(file.Path(), "secret");
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
