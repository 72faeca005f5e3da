#include "tests/fuzz/SectionSeed.h"

#include <algorithm>
#include <cstring>

namespace prc::Test
{
namespace
{

constexpr std::size_t mostStructures = 3;
constexpr std::size_t mostPictures = 3;
constexpr std::size_t seededSections = 3; ///< geometry is not read.

void Put(Bytes& seed, std::span<const std::uint8_t> bytes)
{
    seed.push_back(static_cast<std::uint8_t>(bytes.size()));
    seed.push_back(static_cast<std::uint8_t>(bytes.size() >> 8));
    seed.insert(seed.end(), bytes.begin(), bytes.end());
}

Bytes Take(std::span<const std::uint8_t>& seed)
{
    if (seed.size() < 2)
        return {};
    const std::size_t size = std::min<std::size_t>(seed[0] | seed[1] << 8, seed.size() - 2);
    const Bytes bytes(seed.begin() + 2, seed.begin() + 2 + static_cast<std::ptrdiff_t>(size));
    seed = seed.subspan(2 + size);
    return bytes;
}

std::size_t TakeCount(std::span<const std::uint8_t>& seed, std::size_t most)
{
    if (seed.empty())
        return 0;
    const std::size_t count = seed[0] % (most + 1);
    seed = seed.subspan(1);
    return count;
}

} // namespace

Bytes SeedFrom(const FileSections& sections)
{
    Bytes seed{static_cast<std::uint8_t>(sections.structures.size())};
    for (const FileSections::Structure& structure : sections.structures) {
        std::array<std::uint8_t, sizeof(UniqueId)> id;
        std::memcpy(id.data(), structure.id.data(), id.size());
        Put(seed, id);
        for (std::size_t section = 0; section < seededSections; ++section)
            Put(seed, structure.sections[section]);
        seed.push_back(static_cast<std::uint8_t>(structure.pictures.size()));
        for (const Bytes& picture : structure.pictures)
            Put(seed, picture);
    }
    Put(seed, sections.model);
    return seed;
}

FileSections SectionsFrom(std::span<const std::uint8_t> seed)
{
    FileSections sections;
    sections.structures.resize(TakeCount(seed, mostStructures));
    for (FileSections::Structure& structure : sections.structures) {
        const Bytes id = Take(seed);
        if (id.size() == sizeof(UniqueId))
            std::memcpy(structure.id.data(), id.data(), sizeof(UniqueId));
        for (std::size_t section = 0; section < seededSections; ++section)
            structure.sections[section] = Take(seed);
        structure.pictures.resize(TakeCount(seed, mostPictures));
        for (Bytes& picture : structure.pictures)
            picture = Take(seed);
    }
    sections.model = Take(seed);
    return sections;
}

} // namespace prc::Test
