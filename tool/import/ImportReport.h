#pragma once

#include <cstddef>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace Orvel::Import
{

/// The scene cannot be imported. `what()` is one line for the user without the file's name, no full stop at its end.
class ImportError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// A name from a file as it stands in a message: in quotes, control characters replaced by '?', at most 100 bytes.
[[nodiscard]] std::string Quoted(std::string_view name);

/// What an import could not keep: single remarks and counted kinds of things.
class ImportReport
{
public:
    /// @param message one line for the user, e.g. "texture 'wood.png' was not found".
    void Warn(std::string message);

    /// Counts things of one kind that the exported file cannot hold.
    /// @param one  the kind as it reads after the number 1, e.g. "skin".
    /// @param many the kind as it reads after every other number, e.g. "skins"; tells the kinds apart.
    void CountLeftOut(const std::string& one, const std::string& many, std::size_t count = 1);

    /// All remarks, equal ones once, then one line for each counted kind ("left out: 3 skins").
    [[nodiscard]] std::vector<std::string> Warnings() const;

private:
    struct LeftOut
    {
        std::string one;
        std::size_t count = 0;
    };

    std::vector<std::string> messages;
    std::map<std::string, LeftOut> leftOut; ///< by the plural
};

} // namespace Orvel::Import
