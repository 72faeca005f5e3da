#pragma once

#include <cstdint>
#include <cstring>

/// Where hosts find virtual functions: tests pin it where the Itanium C++ ABI is in use.
#if defined(__x86_64__) && !defined(_WIN32)
#define ORVEL_TESTS_SEE_VIRTUAL_SLOTS

namespace Orvel
{

/// Position in the table of virtual functions, as the Itanium C++ ABI writes it into a member function pointer.
template <class Function>
std::int64_t TableEntry(Function function)
{
    std::int64_t words[2];
    static_assert(sizeof words == sizeof function);
    std::memcpy(words, &function, sizeof words);
    return (words[0] - 1) / static_cast<std::int64_t>(sizeof(void*));
}

/// The same for classes with a virtual destructor: that one is slot 0, and takes two entries.
template <class Function>
std::int64_t Slot(Function function)
{
    return TableEntry(function) - 1;
}

} // namespace Orvel

#endif
