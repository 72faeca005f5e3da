#include "platform/prcfile/DoubleCodes.h"

namespace prc
{

namespace
{

/// Consecutive exponents have consecutive codes over long stretches, so the 2048 codes are kept as their runs: from
/// `exponent` on, up to the next run, codes of `length` bits count up from `code`.
struct ExponentRun
{
    std::uint16_t exponent;
    std::uint8_t length;
    std::uint32_t code;
};

// clang-format off
constexpr ExponentRun exponentRuns[] = {
    {0, 22, 0xD1D32}, {2, 22, 0xF78D8}, {42, 22, 0x3A8300}, {852, 18, 0xF787}, {853, 18, 0xD1D4}, {854, 19, 0x77F9F},
    {855, 18, 0x3B8FB}, {856, 19, 0x1EF1A}, {857, 21, 0x1D4315}, {858, 16, 0x3DE2}, {859, 22, 0x3A862C},
    {872, 21, 0x1D431D}, {873, 22, 0x3A8639}, {874, 22, 0x3A863C}, {875, 16, 0x3DE0}, {876, 18, 0x3A95E},
    {877, 21, 0x1D431F}, {878, 22, 0x3A863D}, {879, 22, 0x3A8640}, {880, 20, 0x34749}, {881, 20, 0x3474D},
    {882, 22, 0x3A8641}, {911, 21, 0x1D432F}, {912, 22, 0x3A8660}, {915, 21, 0x1D4332}, {916, 18, 0xD1D5},
    {917, 18, 0x3BFDA}, {918, 15, 0x7528}, {920, 18, 0x3A95F}, {921, 17, 0x1D434}, {922, 19, 0x750CD},
    {923, 18, 0x3A867}, {924, 19, 0x771FD}, {925, 15, 0x7764}, {926, 20, 0xEE3F9}, {927, 18, 0x3BFDB},
    {928, 16, 0xEFF7}, {929, 18, 0xD1D6}, {930, 22, 0x3A8663}, {931, 22, 0x3A8666}, {932, 18, 0x3B8FA},
    {933, 17, 0x1D435}, {934, 17, 0x1DFE4}, {935, 19, 0x750D8}, {936, 18, 0x3A95B}, {937, 19, 0x77F9E},
    {938, 19, 0x750D9}, {939, 18, 0xD1D7}, {940, 18, 0x3B8FF}, {941, 17, 0x1DC7C}, {942, 19, 0x750DA},
    {943, 17, 0x7BC2}, {944, 18, 0x3BFCA}, {945, 19, 0x1A3A5}, {946, 17, 0x1D4AC}, {947, 18, 0x3A86E},
    {948, 17, 0x1D438}, {949, 18, 0x3BFCB}, {950, 19, 0x1A3A7}, {951, 17, 0x1D4AE}, {952, 18, 0x3BFCE},
    {953, 18, 0xF78C}, {954, 17, 0x1DFEC}, {955, 17, 0x1D439}, {956, 17, 0x68E8}, {957, 18, 0xF786},
    {958, 15, 0x771E}, {959, 17, 0x1DFE6}, {960, 15, 0x77F8}, {961, 14, 0x3BB3}, {962, 14, 0x3B8E}, {963, 14, 0x3A82},
    {964, 14, 0x3B96}, {965, 13, 0x68F}, {966, 12, 0x3D4}, {967, 13, 0x1DCA}, {968, 12, 0x346}, {969, 12, 0xEE7},
    {970, 12, 0xEEA}, {971, 11, 0x1ED}, {972, 12, 0x3DF}, {973, 11, 0x1A2}, {974, 11, 0x56F}, {975, 11, 0xB9},
    {976, 13, 0x7B2}, {977, 13, 0x1DD8}, {978, 13, 0x15BA}, {979, 12, 0xEE6}, {980, 13, 0x15B8}, {981, 14, 0xF79},
    {982, 14, 0x3A81}, {983, 14, 0xD1C}, {984, 15, 0x7765}, {985, 14, 0xF54}, {986, 13, 0x15B9}, {987, 13, 0x7AB},
    {988, 15, 0x7500}, {989, 15, 0x1EAA}, {990, 15, 0x7501}, {991, 15, 0x1EAB}, {992, 14, 0x3B97}, {993, 15, 0x752A},
    {994, 15, 0x77FA}, {995, 14, 0x3A93}, {996, 13, 0x1DC6}, {997, 13, 0x7BD}, {998, 13, 0x1DFF}, {999, 12, 0xEFE},
    {1000, 12, 0xEED}, {1001, 11, 0xB8}, {1002, 12, 0x3D8}, {1003, 11, 0x1EB}, {1004, 13, 0x1D4B}, {1005, 13, 0x7B3},
    {1006, 10, 0x5D}, {1007, 12, 0xEEB}, {1008, 11, 0x1EE}, {1009, 10, 0x5F}, {1010, 10, 0x2B6}, {1011, 9, 0x1DE},
    {1012, 8, 0xE8}, {1013, 8, 0xAE}, {1014, 7, 0x1B}, {1015, 7, 0x76}, {1016, 7, 0xA}, {1017, 6, 0x8},
    {1018, 6, 0xE}, {1019, 6, 0x4}, {1020, 6, 0xC}, {1021, 5, 0x3}, {1022, 4, 0x8}, {1023, 5, 0x13}, {1024, 5, 0x1B},
    {1025, 5, 0x17}, {1026, 5, 0x12}, {1027, 5, 0x19}, {1029, 5, 0x18}, {1030, 5, 0x1C}, {1031, 5, 0x14},
    {1032, 5, 0x5}, {1033, 8, 0x16}, {1034, 12, 0xEE2}, {1035, 12, 0xEE4}, {1036, 8, 0xAC}, {1037, 13, 0x15BB},
    {1038, 22, 0x3A8667}, {1039, 22, 0x3A86D8}, {1042, 17, 0x1DC7E}, {1043, 22, 0x3A86DB}, {1048, 22, 0x3A86F0},
    {1064, 22, 0x3A8740}, {1089, 15, 0x1A3B}, {1090, 22, 0x3A8759}, {1257, 22, 0x3A9000}, {2025, 22, 0x3A95A0},
    {2041, 22, 0x3B8FE0}, {2045, 21, 0x68E90}, {2047, 21, 0x68E98},
};
// clang-format on

constexpr std::array<FrequentDouble, frequentDoubleCount> values = {{
    {0x0000000000000000U, 0x1, 2},    // 0.0
    {0x3E35798EE2308C3AU, 0xF4, 10},  // 5e-09
    {0x3E45798EE2308C3AU, 0x77C, 11}, // 1e-08
    {0x3E8AD7F29ABCAF4AU, 0xAF, 8},   // 2.0000000000000004e-07
    {0x3EC0C6F7A0B5ED8EU, 0x1D2, 9},  // 2.0000000000000003e-06
    {0x3F454C985F06F694U, 0xD0, 10},  // 0.00065
    {0x3F4A36E2EB1C432DU, 0x9, 6},    // 0.0008
    {0x3F50624DD2F1A9FCU, 0xF, 4},    // 0.001
    {0x3F60624DD2F1A9FCU, 0x16, 5},   // 0.002
    {0x3FBE69AD42C3C9EEU, 0x751, 11}, // 0.11879999999999999
    {0x3FE0000000000000U, 0x777, 11}, // 0.5
    {0x3FEFFFFFF8000002U, 0x1D6, 9},  // 0.999999985098839
    {0x3FF0000000000000U, 0x0, 4},    // 1.0
    {0x401921FB54442D18U, 0x15A, 9},  // 6.283185307179586
    {0x4035EE1480000000U, 0x774, 11}, // 21.93000030517578
    {0x404CA5DC1A63C1F8U, 0x1D3, 9},  // 57.29577951308232
    {0x405BB32FE0000000U, 0x77E, 11}, // 110.79979705810547
    {0x405C332FE0000000U, 0x5E, 10},  // 112.79979705810547
    {0x4066800000000000U, 0x1D7, 9},  // 180.0
    {0x4076800000000000U, 0x1D5, 9},  // 360.0
    {0x408F400000000000U, 0x77D, 11}, // 1000.0
    {0x409233FFFFFFFFFFU, 0xD2, 10},  // 1164.9999999999998
    {0x4092340000000000U, 0x3C, 8},   // 1165.0
    {0x4092340000000001U, 0x753, 11}, // 1165.0000000000002
    {0x4092ABFFFFFFFFFFU, 0xD3, 10},  // 1194.9999999999998
    {0x4092AC0000000000U, 0x35, 8},   // 1195.0
    {0x4092AC0000000001U, 0x770, 11}, // 1195.0000000000002
    {0x40C81C8000000000U, 0x1F, 7},   // 12345.0
    {0x41CDCD64FF800000U, 0x2A, 6},   // 999999999.0
}};

constexpr PackedCode pack(std::uint32_t code, unsigned length)
{
    return code | length << PackedCodeBits::lengthShift;
}

constexpr std::array<PackedCode, exponentCount> expandExponentCodes()
{
    std::array<PackedCode, exponentCount> codes{};
    for (std::size_t run = 0; run < std::size(exponentRuns); ++run) {
        const ExponentRun& first = exponentRuns[run];
        const std::size_t end = run + 1 < std::size(exponentRuns) ? exponentRuns[run + 1].exponent : exponentCount;
        for (std::size_t exponent = first.exponent; exponent < end; ++exponent)
            codes[exponent] = pack(first.code + static_cast<std::uint32_t>(exponent - first.exponent), first.length);
    }
    return codes;
}

constexpr std::array<FrequentDouble, frequentSlotCount> hashFrequentDoubles()
{
    std::array<FrequentDouble, frequentSlotCount> slots{};
    for (FrequentDouble& slot : slots)
        slot.magnitude = ~std::uint64_t{0}; // a sign bit that no magnitude has
    for (const FrequentDouble& value : values)
        slots[frequentSlot(value.magnitude)] = value;
    return slots;
}

constexpr bool everyFrequentDoubleHasItsSlot()
{
    const std::array<FrequentDouble, frequentSlotCount> slots = hashFrequentDoubles();
    for (const FrequentDouble& value : values) {
        if (slots[frequentSlot(value.magnitude)].magnitude != value.magnitude)
            return false;
    }
    return true;
}

static_assert(everyFrequentDoubleHasItsSlot(), "two frequent values share a slot: choose another hash multiplier");

} // namespace

constexpr std::array<PackedCode, exponentCount> exponentCodes = expandExponentCodes();
constexpr std::array<FrequentDouble, frequentDoubleCount> frequentDoubles = values;
constexpr std::array<FrequentDouble, frequentSlotCount> frequentDoubleSlots = hashFrequentDoubles();

} // namespace prc
