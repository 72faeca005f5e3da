#pragma once

#include <cstdint>

namespace prc
{

/// What a reader may still take up.
class ReadBudget
{
public:
    explicit ReadBudget(std::uint64_t bytes)
        : limit(bytes)
        , left(bytes)
    {}

    /// @return false when there is not so much left; nothing is taken then.
    [[nodiscard]] bool take(std::uint64_t bytes)
    {
        if (bytes > left)
            return false;
        left -= bytes;
        return true;
    }

    [[nodiscard]] std::uint64_t rest() const { return left; }
    [[nodiscard]] std::uint64_t whole() const { return limit; }

private:
    std::uint64_t limit;
    std::uint64_t left;
};

} // namespace prc
