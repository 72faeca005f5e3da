#pragma once

#include "platform/prcfile/NullIndex.h"

#include <cstdint>
#include <optional>
#include <string>

namespace prc::Model
{

/// UTF-8, always valid: what was not is replaced by U+FFFD on reading. Absent is not the same as empty.
using Name = std::optional<std::string>;

/// Bits of Graphics::behaviour. "Inherit" bits come in pairs: one that hands the parent's state down to all children,
/// one with which a child asks for it.
namespace Behaviour
{
inline constexpr std::uint16_t show = 0x0001;
inline constexpr std::uint16_t childrenInheritShow = 0x0002;
inline constexpr std::uint16_t takesShowOfParent = 0x0004;
inline constexpr std::uint16_t childrenInheritColour = 0x0008;
inline constexpr std::uint16_t takesColourOfParent = 0x0010;
inline constexpr std::uint16_t removed = 0x2000;
} // namespace Behaviour

/// How an entity of the tree is drawn.
struct Graphics
{
    std::uint32_t layer = nullIndex;
    std::uint32_t style = nullIndex; ///< position in Globals::styles of the same file structure.
    std::uint16_t behaviour = 0;     ///< bits of the namespace Behaviour.
    bool stated = false;             ///< false: the file has said nothing on it yet, which does not hide.

    /// The entity's own state, before anything is inherited.
    [[nodiscard]] bool isShown() const { return !stated || (behaviour & Behaviour::show) != 0; }
    [[nodiscard]] bool isRemoved() const { return (behaviour & Behaviour::removed) != 0; }
};

} // namespace prc::Model
