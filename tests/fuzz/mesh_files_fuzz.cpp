#include "tool/import/BinaryStl.h"
#include "tool/import/ImportReport.h"
#include "tool/import/MeshFileChecks.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>

/// Gives what the fuzzer makes up to every check of mesh files, whatever format it seems to have, and reads it as a
/// binary STL file. Whatever is wrong is told by ImportError.
namespace
{

using namespace Orvel::Import;

void Require(bool condition)
{
    if (!condition)
        std::abort();
}

void ReadStl(std::string_view bytes)
{
    const std::optional<ImportedScene> scene = ReadBinaryStl(bytes);
    if (!scene)
        return;
    const ImportedGeometry& shape = scene->geometries.at(0);
    Require(shape.triangles.size() == 3 * ((bytes.size() - 84) / 50));
    for (const std::uint32_t point : shape.triangles)
        Require(3 * std::size_t{point} + 2 < shape.positions.size());
    for (const double value : shape.positions)
        Require(std::isfinite(value));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (const auto read : {CheckPly, CheckStl, CheckOff, CheckBraces, CheckIfc, CheckLwo, CheckObj, ReadStl}) {
        try {
            read(bytes);
        } catch (const ImportError&) {
            continue;
        }
    }
    return 0;
}
