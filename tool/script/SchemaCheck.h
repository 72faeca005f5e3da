#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>

namespace Orvel::Script
{

/// Where a value breaks its schema.
struct SchemaFault
{
    std::string path; ///< JSON pointer (RFC 6901) to the value; empty: the whole
    std::string text; ///< what is wrong, as it reads after "at PATH: "
};

/// Checks a value against a JSON schema (draft 2020-12) that uses `type`, `enum`, `minimum`, `maximum`, `minLength`,
/// `minItems`, `maxItems`, `items`, `properties`, `required`, `additionalProperties` as false, and `$ref` into the
/// schema itself. Other keywords say nothing about values here.
///
/// @return the first fault, in the order of the value; nothing when the value fits.
[[nodiscard]] std::optional<SchemaFault> FindSchemaFault(const nlohmann::json& value, const nlohmann::json& schema);

} // namespace Orvel::Script
