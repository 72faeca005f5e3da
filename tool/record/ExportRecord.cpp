#include "tool/record/ExportRecord.h"

#include "mapping/COrvelPRCMapper.h"
#include "platform/core/COrvelSceneNode.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <ostream>
#include <utility>

namespace Orvel::Record
{

namespace
{

using Json = nlohmann::ordered_json;

/// The object's members, each list with one element on a line: large records stay readable, and nothing but one element
/// is held in memory.
class RecordWriter
{
public:
    explicit RecordWriter(std::ostream& stream)
        : out(stream)
    {
        out << '{';
    }

    void Member(const char* key, const Json& value)
    {
        Key(key);
        out << Text(value);
    }

    /// @param elementOf makes the JSON of one element.
    template <class List, class Function>
    void ListOf(const char* key, const List& list, Function elementOf)
    {
        Key(key);
        out << '[';
        const char* separator = "\n  ";
        for (const auto& element : list) {
            out << separator << Text(elementOf(element));
            separator = ",\n  ";
        }
        out << (list.empty() ? "]" : "\n ]");
    }

    void End() { out << "\n}\n"; }

private:
    void Key(const char* key)
    {
        out << (first ? "\n " : ",\n ") << Text(key) << ": ";
        first = false;
    }

    static std::string Text(const Json& value) { return value.dump(-1, ' ', false, Json::error_handler_t::replace); }

    std::ostream& out;
    bool first = true;
};

Json NameOrNull(const std::string& name)
{
    return name.empty() ? Json() : Json(name);
}

/// Names from the root down to the node.
Json PathOf(COrvelSceneNode* node)
{
    std::vector<std::string> names;
    for (COrvelSceneNode* step = node; step; step = step->Parent())
        names.push_back(step->Name().toStdString());
    std::reverse(names.begin(), names.end());
    return names;
}

Json NodeElement(const COrvelPRCMapper& mapper, int number, COrvelSceneNode* node)
{
    const int parent = mapper.MapIntoIndex(node->Parent());
    return {{"number", number},
            {"name", node->Name().toStdString()},
            {"parent", parent < 0 ? Json() : Json(parent)},
            {"path", PathOf(node)}};
}

Json MaterialFramesOf(const COrvelPRCMapper::MaterialFrames& animation, const char* values)
{
    Json materials = Json::array();
    for (const auto& [material, frames] : animation)
        materials.push_back({{"material", material}, {values, frames}});
    return materials;
}

Json SceneStateElement(int ordinal, const COrvelPRCMapper::MaterialReplacements& replacements, const RunFacts& facts)
{
    Json pairs = Json::array();
    for (const auto& [replaced, replacement] : replacements)
        pairs.push_back({{"replaced", replaced}, {"replacement", replacement}});
    const auto position = static_cast<std::size_t>(ordinal);
    const std::string name = position < facts.sceneStates.size() ? facts.sceneStates[position] : std::string();
    return {{"ordinal", ordinal}, {"name", name}, {"materials", std::move(pairs)}};
}

Json PointOf(const COrvel3DVertex& vertex)
{
    return {vertex.X(), vertex.Y(), vertex.Z()};
}

Json CameraElement(const std::pair<COrvelBasicCamera, COrvelString>& camera)
{
    const auto& [values, name] = camera;
    return {{"name", name.toStdString()},
            {"position", PointOf(values.Position())},
            {"target", PointOf(values.LookAt())},
            {"up", PointOf(values.CamUp())},
            {"fieldOfView", values.FOV()}};
}

} // namespace

void WriteRecord(const COrvelPRCMapper& mapper, const RunFacts& facts, std::ostream& out)
{
    std::vector<std::pair<int, COrvelSceneNode*>> nodes;
    nodes.reserve(mapper.nodeIndices.size());
    for (const auto& [node, number] : mapper.nodeIndices)
        nodes.emplace_back(number, node);
    std::sort(nodes.begin(), nodes.end());

    RecordWriter writer(out);
    writer.Member("record", "orvelprc export");
    writer.Member("version", RecordVersion);
    writer.Member("clip", NameOrNull(facts.clip));
    writer.Member("camera", NameOrNull(facts.camera));
    writer.Member("framesPerSecond", facts.framesPerSecond);
    writer.Member("lastFrame", facts.lastFrame);
    writer.ListOf("nodes", nodes, [&](const auto& entry) { return NodeElement(mapper, entry.first, entry.second); });
    writer.Member("hiddenNodes", mapper.hiddenNodeIndices);
    writer.ListOf("sceneStates", mapper.sceneStateMaterials,
                  [&](const auto& state) { return SceneStateElement(state.first, state.second, facts); });
    writer.ListOf("materialAnimation", mapper.materialAnimation, [](const auto& entry) {
        return Json{{"material", entry.first}, {"numbers", entry.second}};
    });
    writer.ListOf("materialSequenceAnimation", mapper.materialSequenceAnimation, [](const auto& entry) {
        return Json{{"key", entry.first.toStdString()}, {"materials", MaterialFramesOf(entry.second, "indices")}};
    });
    writer.ListOf("cameras", mapper.cameraAnimation, CameraElement);
    writer.End();
}

} // namespace Orvel::Record
