#pragma once

#include "platform/core/COrvelString.h"
#include "platform/core/Export.h"

#include <array>
#include <compare>
#include <cstdint>
#include <functional>

namespace Orvel
{

class COrvelArchiveBase;

/// A universally unique identifier (RFC 4122). Ordered by its bytes.
class ORVEL_CORE_API COrvelUUID
{
public:
    using Bytes = std::array<std::uint8_t, 16>; ///< in the order of the text form

    /// A source of 64 random bits for each call. It need not be secure.
    using Generator = std::function<std::uint64_t()>;

    /// Invalid: all zero.
    COrvelUUID() = default;
    explicit COrvelUUID(const Bytes& value)
        : bytes(value)
    {}

    /// Replaces the value by a fresh random one (version 4), drawn from the process's generator.
    void Generate();

    /// The generator of the whole process. An empty one puts the system's own source back, which never repeats a value;
    /// with another one, values are as unique as its numbers. std::rand is never drawn from.
    static void SetGenerator(Generator generator);

    /// Installs a generator whose values are the same for the same seed, on every system.
    static void SeedGenerator(std::uint64_t seed);

    [[nodiscard]] bool IsValid() const { return *this != COrvelUUID(); }

    /// Back to invalid.
    void Reset() { bytes = {}; }

    [[nodiscard]] auto operator<=>(const COrvelUUID&) const = default;

    /// 8-4-4-4-12 lower-case hexadecimal digits without braces: fit for a file name.
    [[nodiscard]] COrvelString ToString() const;

    /// Reads the text form, in either case, with or without braces. Anything else gives an invalid value.
    [[nodiscard]] static COrvelUUID FromString(const COrvelString& text);

    /// The 16 bytes.
    bool ArchiveReadWrite(COrvelArchiveBase& archive);

    [[nodiscard]] const Bytes& Data() const { return bytes; }

private:
    Bytes bytes{};
};

} // namespace Orvel
