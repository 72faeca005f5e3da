#pragma once

#include <nlohmann/json_fwd.hpp>

namespace Orvel::Import
{

/// Checks the parts of a glTF document that the import reads: each member is of its type, each list has its length, and
/// each index lies inside the table that it points into. The parser behind it takes a member of a wrong type for a
/// missing one and cuts numbers to 32 bits.
///
/// Whole numbers written with a fraction ("24.0") are replaced by integers.
///
/// @throws ImportError naming the member, e.g. "nodes[3].mesh is 7, but the file has 2 meshes".
void CheckGltfMembers(nlohmann::json& document);

} // namespace Orvel::Import
