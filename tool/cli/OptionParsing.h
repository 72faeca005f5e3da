#pragma once

#include "tool/cli/ExportOptions.h"
#include "tool/cli/PRCInput.h"
#include "tool/cli/ValueHints.h"

#include <CLI/CLI.hpp>

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace Orvel::Cli
{

/// Options and checks that several commands share.

/// Refuses what is no finite number or not accepted.
///
/// @param description as it reads after "is not": "a number above 0".
[[nodiscard]] CLI::Validator Number(std::string description, bool (*accepts)(double));

/// Refuses what is not the name of an existing folder.
[[nodiscard]] CLI::Validator Folder();

/// @param option for the message.
/// @param text   a number and perhaps K, M, G or T, which are powers of 1024, as in "500M", "1.5GiB".
/// @throws CLI::ValidationError
[[nodiscard]] std::uint64_t SizeInBytes(const std::string& option, const std::string& text);

/// @param option for the message.
/// @param text   the name of a colour, or its hexadecimal digits as in "#ff8000" or "#f80".
/// @return sRGB.
/// @throws CLI::ValidationError
[[nodiscard]] std::array<std::uint8_t, 3> ColourOf(const std::string& option, const std::string& text);

template <typename Value>
using Choices = std::vector<std::pair<std::string, Value>>;

/// Adds an option whose value is one of some words, in any case.
template <typename Value, typename Target>
CLI::Option* AddChoice(CLI::App& command, const std::string& name, Target& value, const Choices<Value>& choices,
                       const std::string& description)
{
    const auto choose = [name, choices, &value](const std::string& text) {
        std::string known;
        for (const auto& [word, meaning] : choices) {
            if (CLI::detail::to_lower(text) == word) {
                value = meaning;
                return;
            }
            known += (known.empty() ? "" : ", ") + word;
        }
        throw CLI::ValidationError(name, "'" + text + "' is none of: " + known);
    };
    CLI::Option* const option = command.add_option_function<std::string>(name, choose, description);
    for (const auto& [word, meaning] : choices)
        OfferWords(*option, {word});
    return option;
}

/// Adds --time-limit and --memory-limit.
void AddLimitOptions(CLI::App& command, LimitOptions& limits);

/// Adds what tells how a scene is to be read: --scale, --up, --crease-angle, --texture-dir. Scenes are offered for the
/// arguments that the command has.
void AddImportOptions(CLI::App& command, Import::LoadOptions& load);

/// Adds what chooses and limits a model: --stream, --password, --unpack-limit.
void AddModelChoiceOptions(CLI::App& command, ModelInput& input);

/// Adds the FILE to read, and the options above.
void AddModelInputOptions(CLI::App& command, ModelInput& input);

/// Adds --no-clobber.
void AddExistingFileOption(CLI::App& command, ExistingFile& existing);

} // namespace Orvel::Cli
