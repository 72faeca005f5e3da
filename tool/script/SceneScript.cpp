#include "tool/script/SceneScript.h"

#include "tool/import/JsonDepth.h"
#include "tool/script/SchemaCheck.h"

#include <fstream>
#include <iterator>

namespace Orvel::Script
{

namespace
{

using nlohmann::json;

constexpr std::uintmax_t LargestScript = std::uintmax_t{64} << 20;

template <class Value, class Convert>
std::optional<Value> Optional(const json& object, const char* name, Convert convert)
{
    const auto member = object.find(name);
    if (member == object.end())
        return std::nullopt;
    return convert(*member);
}

COrvelColor ColourOf(const json& value)
{
    return {value[0], value[1], value[2], 1.0};
}

COrvel3DVertex VectorOf(const json& value)
{
    return {value[0], value[1], value[2]};
}

std::optional<std::pair<int, int>> ConstantSpeedOf(const json& object)
{
    return Optional<std::pair<int, int>>(object, "constantSpeed",
                                         [](const json& frames) { return std::pair<int, int>(frames[0], frames[1]); });
}

LookChange LookOf(const json& object)
{
    LookChange look;
    look.ambient = Optional<COrvelColor>(object, "ambient", ColourOf);
    look.diffuse = Optional<COrvelColor>(object, "diffuse", ColourOf);
    look.specular = Optional<COrvelColor>(object, "specular", ColourOf);
    look.emissive = Optional<COrvelColor>(object, "emissive", ColourOf);
    look.opacity = Optional<double>(object, "opacity", [](const json& value) { return value.get<double>(); });
    return look;
}

StateOfMaterials StateOf(const json& object)
{
    StateOfMaterials state{object["name"], {}};
    for (const json& entry : object["materials"])
        state.materials.emplace_back(entry["material"], LookOf(entry));
    return state;
}

ChangingMaterial MaterialOf(const json& object)
{
    ChangingMaterial material{object["material"], {}};
    for (const json& key : object["keys"])
        material.keys.push_back({key["frame"], LookOf(key)});
    return material;
}

CameraMove MoveOf(const json& object)
{
    using Type = CameraMove::Type;
    const std::string& type = object["type"].get_ref<const std::string&>();
    CameraMove move;
    move.type = type == "orbit"    ? Type::Orbit
                : type == "circle" ? Type::Circle
                : type == "dome"   ? Type::Dome
                                   : Type::Sphere;
    move.from = object["from"];
    move.to = object.value("to", move.from);
    move.angleInDegrees = object.value("angle", move.angleInDegrees);
    move.descend = object.value("descend", move.descend);
    move.constantSpeed = ConstantSpeedOf(object);
    move.rows = object.value("rows", move.rows);
    move.columns = object.value("columns", move.columns);
    move.wrap = object.value("wrap", move.wrap);
    return move;
}

ScriptCamera CameraOf(const json& object)
{
    ScriptCamera camera;
    camera.name = object.value("name", camera.name);
    camera.position = Optional<COrvel3DVertex>(object, "position", VectorOf);
    camera.target = Optional<COrvel3DVertex>(object, "target", VectorOf);
    camera.fieldOfViewInDegrees = object.value("fieldOfView", camera.fieldOfViewInDegrees);
    for (const json& move : object["moves"])
        camera.moves.push_back(MoveOf(move));
    return camera;
}

TurningNode TurningOf(const json& object)
{
    TurningNode turning;
    turning.node = object["node"];
    turning.from = object["from"];
    turning.to = object["to"];
    turning.angleInDegrees = object.value("angle", turning.angleInDegrees);
    turning.point = Optional<COrvel3DVertex>(object, "point", VectorOf);
    turning.direction = Optional<COrvel3DVertex>(object, "direction", VectorOf).value_or(turning.direction);
    turning.constantSpeed = ConstantSpeedOf(object);
    return turning;
}

template <class Element, class Convert>
void ReadList(const json& script, const char* name, std::vector<Element>& list, Convert convert)
{
    if (const auto found = script.find(name); found != script.end())
        for (const json& element : *found)
            list.push_back(convert(element));
}

[[noreturn]] void Refuse(const std::string& path, const std::string& text)
{
    throw Import::ImportError("in the scene script" + (path.empty() ? "" : " at " + path) + ": " + text);
}

/// What no schema can say.
void CheckRanges(const json& script)
{
    const auto check = [](const json& list, const std::string& path) {
        for (std::size_t i = 0; i < list.size(); ++i)
            if (list[i].contains("to") && list[i]["to"] < list[i]["from"])
                Refuse(path + "/" + std::to_string(i) + "/to", "this must not lie before \"from\"");
    };
    check(script.value("turning", json::array()), "/turning");
    check(script.value("sequences", json::array()), "/sequences");
    if (script.contains("camera"))
        check(script["camera"]["moves"], "/camera/moves");
}

} // namespace

SceneScript ParseScript(std::string_view text)
{
    json script;
    try {
        Import::CheckJsonDepth(text);
        script = json::parse(text);
    } catch (const json::parse_error& error) {
        Refuse("", "no JSON from byte " + std::to_string(error.byte) + " on");
    } catch (const Import::ImportError& error) {
        Refuse("", error.what());
    } catch (const json::out_of_range&) {
        Refuse("", "a number is too large");
    }
    static const json schema = json::parse(ScriptSchema());
    if (const auto fault = FindSchemaFault(script, schema))
        Refuse(fault->path, fault->text);
    CheckRanges(script);

    SceneScript result;
    ReadList(script, "states", result.states, StateOf);
    ReadList(script, "materials", result.materials, MaterialOf);
    result.camera = Optional<ScriptCamera>(script, "camera", CameraOf);
    ReadList(script, "turning", result.turning, TurningOf);
    ReadList(script, "visibility", result.visibility, [](const json& entry) {
        return NodeVisibility{entry["node"], entry["visible"]};
    });
    ReadList(script, "sequences", result.sequences, [](const json& entry) {
        return NamedRange{entry["name"], entry["from"], entry["to"]};
    });
    return result;
}

SceneScript ReadScript(const std::filesystem::path& file)
{
    std::error_code missing;
    const std::uintmax_t size = std::filesystem::file_size(file, missing);
    std::ifstream in(file, std::ios::binary);
    if (missing || !in)
        throw Import::ImportError("the scene script " + Import::Quoted(file.string()) + " cannot be read");
    if (size > LargestScript)
        throw Import::ImportError("the scene script " + Import::Quoted(file.string()) + " is larger than 64 MiB");
    const std::string text{std::istreambuf_iterator<char>(in), {}};
    return ParseScript(text);
}

ScriptCamera Turntable(int frames)
{
    ScriptCamera camera;
    CameraMove orbit;
    orbit.to = frames - 1;
    camera.moves.push_back(orbit);
    return camera;
}

} // namespace Orvel::Script
