#pragma once

#include "platform/core/COrvel3DVertex.h"
#include "platform/core/COrvelColor.h"
#include "tool/import/ImportReport.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Orvel::Script
{

/// How a material differs from its look at rest; what is not given stays.
struct LookChange
{
    std::optional<COrvelColor> ambient;
    std::optional<COrvelColor> diffuse;
    std::optional<COrvelColor> specular;
    std::optional<COrvelColor> emissive;
    std::optional<double> opacity;
};

struct StateOfMaterials
{
    std::string name;
    std::vector<std::pair<std::string, LookChange>> materials; ///< by name
};

struct MaterialKey
{
    int frame = 0;
    LookChange look;
};

struct ChangingMaterial
{
    std::string material; ///< name
    std::vector<MaterialKey> keys;
};

struct CameraMove
{
    enum class Type
    {
        Orbit,
        Circle, ///< grids, a view a frame
        Dome,
        Sphere
    };

    Type type = Type::Orbit;
    int from = 0;
    int to = 0; ///< of an orbit
    double angleInDegrees = 360.0;
    bool descend = false;
    std::optional<std::pair<int, int>> constantSpeed; ///< nothing: all of it
    int rows = 2;
    int columns = 12;
    bool wrap = false;
};

struct ScriptCamera
{
    std::string name = "Turntable";
    std::optional<COrvel3DVertex> position; ///< in the coordinates of the file, like target
    std::optional<COrvel3DVertex> target;
    double fieldOfViewInDegrees = 30.0;
    std::vector<CameraMove> moves;
};

struct TurningNode
{
    std::string node; ///< name or end of its path
    int from = 0;
    int to = 0;
    double angleInDegrees = 360.0;
    std::optional<COrvel3DVertex> point; ///< in the coordinates of the node's parent; nothing: the node's origin
    COrvel3DVertex direction{0.0, 0.0, 1.0};
    std::optional<std::pair<int, int>> constantSpeed;
};

struct NodeVisibility
{
    std::string node; ///< name or end of its path
    bool visible = true;
};

struct NamedRange
{
    std::string name;
    int from = 0;
    int to = 0;
};

/// What the user says about a scene beyond its file; see docs/scene-script.md.
struct SceneScript
{
    std::vector<StateOfMaterials> states;
    std::vector<ChangingMaterial> materials;
    std::optional<ScriptCamera> camera;
    std::vector<TurningNode> turning;
    std::vector<NodeVisibility> visibility;
    std::vector<NamedRange> sequences;
};

/// The schema that scripts are checked against, as JSON text.
[[nodiscard]] std::string_view ScriptSchema();

/// @throws Import::ImportError for text that is no JSON or does not fit the schema, with the place in it.
[[nodiscard]] SceneScript ParseScript(std::string_view text);

/// @throws Import::ImportError when the file cannot be read, is larger than 64 MiB, or as ParseScript.
[[nodiscard]] SceneScript ReadScript(const std::filesystem::path& file);

/// The camera of a turntable: one full turn round the whole scene, whose last frame leads on to the first.
/// @param frames 1 or more.
[[nodiscard]] ScriptCamera Turntable(int frames);

} // namespace Orvel::Script
