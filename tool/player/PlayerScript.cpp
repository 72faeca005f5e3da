#include "tool/player/PlayerScript.h"

#include "animation/COrvelKeyFrameManager.h"
#include "animation/COrvelSequence.h"
#include "mapping/COrvelPRCMapper.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelSceneNode.h"
#include "platform/prcfile/PRCModel.h"
#include "tool/animation/SceneExtent.h"
#include "tool/import/DistinctNames.h"
#include "tool/player/DrivenMaterials.h"
#include "tool/player/FileTree.h"
#include "tool/player/NodeList.h"
#include "tool/player/PlayerRuntime.h"
#include "tool/player/PoseTrack.h"
#include "tool/player/Track.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numbers>
#include <set>
#include <string_view>

namespace Orvel::Player
{

namespace
{

using nlohmann::ordered_json;

/// What the played motion may be off, beside what the key frames are: a fifth of a pixel in a picture of 1000.
constexpr double PositionTolerance = 2e-4; ///< as a part of the diagonal of the scene
constexpr double AngleTolerance = 0.03 * std::numbers::pi / 180.0;
constexpr double LookTolerance = 0.75; ///< of 255

constexpr std::size_t CameraWidth = 10;
constexpr double UpStep = 1e-3;
constexpr double FieldOfViewStepInDegrees = 0.01;

/// Every material that states and animations change, by number.
std::set<int> ChangedMaterials(const COrvelPRCMapper& mapper)
{
    std::set<int> numbers;
    for (const auto& [ordinal, replacements] : mapper.sceneStateMaterials)
        for (const auto& [replaced, replacement] : replacements)
            numbers.insert(replaced);
    for (const auto& [number, frames] : mapper.materialAnimation)
        numbers.insert(number);
    for (const auto& [key, animation] : mapper.materialSequenceAnimation)
        for (const auto& [number, frames] : animation)
            numbers.insert(number);
    return numbers;
}

const prc::Model::Globals& GlobalsOf(const prc::Model::PRCModel& file)
{
    static const prc::Model::Globals none;
    return file.roots.empty() ? none : file.structures[file.roots.front().structure].globals;
}

/// Makes the data of a player out of what an export has left.
class DataMaker
{
public:
    explicit DataMaker(const PlayerInput& playerInput)
        : input(playerInput)
        , tree(ReadFileTree(input.document, input.file))
        , nodes(tree)
        , materials(ChangedMaterials(input.mapper), GlobalsOf(input.file), tree)
        , sceneSize(Animate::MeasureScene(input.document).Diagonal())
    {}

    /// @return null when there is nothing to drive.
    ordered_json Make()
    {
        std::vector<int> hidden;
        for (const std::size_t position : HiddenNodes(tree, input.mapper))
            hidden.push_back(nodes.Add(position));
        ordered_json states = States();
        AddTimeline();
        const std::vector<std::string> names = SequenceNames();
        for (std::size_t i = 0; i < names.size(); ++i)
            AddSequence(*input.sequences[i], names[i]);
        if (sequences.empty() && !Changes(clips.front()))
            clips.clear();
        if (hidden.empty() && states.empty() && clips.empty())
            return nullptr;
        ordered_json uses = materials.Uses(nodes);
        return {{"fps", input.facts.framesPerSecond},
                {"autoplay", input.startsPlaying},
                {"moves", hasMovingNodes},
                {"nodes", nodes.Data()},
                {"hidden", hidden},
                {"uses", std::move(uses)},
                {"looks", materials.Looks()},
                {"states", std::move(states)},
                {"sequences", std::move(sequences)},
                {"clips", std::move(clips)}};
    }

    [[nodiscard]] std::size_t OtherPictures() const { return otherPictures; }

private:
    static bool Changes(const ordered_json& clip)
    {
        return !clip["nodes"].empty() || !clip["materials"].empty() || clip.contains("camera");
    }

    ordered_json States()
    {
        ordered_json states = ordered_json::array();
        const std::vector<std::string> names = Import::DistinctNames(input.facts.sceneStates, "Variant");
        for (const auto& [ordinal, replacements] : input.mapper.sceneStateMaterials) {
            std::vector<std::size_t> looks; // material, look, material, look ...
            for (const auto& [replaced, replacement] : replacements) {
                const auto position = materials.PositionOf(replaced);
                if (!position)
                    continue;
                looks.insert(looks.end(), {*position, materials.AddLook(materials.LookOf(replacement))});
                otherPictures += materials.PicturesDiffer(replaced, replacement) ? 1U : 0U;
            }
            const auto place = static_cast<std::size_t>(ordinal);
            const std::string name = place < names.size() ? names[place] : "";
            states.push_back({{"name", name}, {"looks", std::move(looks)}});
        }
        return states;
    }

    void AddTimeline()
    {
        ordered_json clip = ClipOf(input.timeline, input.facts.lastFrame);
        for (const auto& [number, frames] : input.mapper.materialAnimation)
            AddMaterialTrack(number, frames, 0, input.facts.lastFrame, clip);
        AddCamera(clip);
        clips.push_back(std::move(clip));
    }

    std::vector<std::string> SequenceNames() const
    {
        std::vector<std::string> names;
        for (const COrvelSequence* const sequence : input.sequences)
            names.push_back(sequence->Name().toStdString());
        return Import::DistinctNames(std::move(names), "Sequence");
    }

    void AddSequence(COrvelSequence& sequence, const std::string& name)
    {
        ordered_json clip = ClipOf(sequence, sequence.LastFrame());
        const auto animation = input.mapper.materialSequenceAnimation.find(sequence.UUID().ToString());
        if (animation != input.mapper.materialSequenceAnimation.end()) {
            const std::map<int, int> starts = FirstFramesOfMaterials(sequence);
            for (const auto& [number, indices] : animation->second) {
                std::vector<int> numbers = indices;
                for (int& index : numbers)
                    ++index;
                const auto start = starts.find(number);
                const int missing = start == starts.end() ? 0 : std::max(start->second, 0);
                AddMaterialTrack(number, numbers, missing, sequence.LastFrame(), clip);
            }
        }
        sequences.push_back({{"name", name}, {"clip", AddClip(std::move(clip))}});
    }

    /// The position of a clip that shows the same, or of this one.
    std::size_t AddClip(ordered_json clip)
    {
        const auto isSame = [&](ordered_json other) {
            other.erase("camera");
            return other == clip;
        };
        const auto found = std::ranges::find_if(clips, isSame);
        if (found != clips.end())
            return static_cast<std::size_t>(found - clips.begin());
        clips.push_back(std::move(clip));
        return clips.size() - 1;
    }

    ordered_json ClipOf(COrvelKeyFrameManager& timeline, int lastFrame)
    {
        ordered_json tracks = ordered_json::array();
        for (std::size_t i = 0; i < tree.nodes.size(); ++i) {
            COrvelSceneNode* const node = tree.nodes[i].node;
            if (!node || !tree.nodes[i].hasMeshes || !timeline.IsNodeTransformAnimated(node))
                continue;
            const double scale = std::max(Animate::ScaleAbove(*node), 1e-300);
            const Animate::TransformTolerance tolerance{PositionTolerance * sceneSize / scale, AngleTolerance};
            ordered_json track{{"n", nodes.Add(i)}};
            track.update(MakePoseTrack(SamplesOf(*node, timeline, lastFrame), tolerance));
            tracks.push_back(std::move(track));
            hasMovingNodes = true;
        }
        return {{"last", lastFrame}, {"nodes", std::move(tracks)}, {"materials", ordered_json::array()}};
    }

    static std::vector<COrvelMatrix> SamplesOf(COrvelSceneNode& node, COrvelKeyFrameManager& timeline, int lastFrame)
    {
        const COrvelNodePath path({&node});
        std::vector<COrvelMatrix> samples;
        samples.reserve(static_cast<std::size_t>(lastFrame) + 1);
        for (int frame = 0; frame <= lastFrame; ++frame)
            samples.push_back(timeline.WorldMatrixAtFrame(path, frame));
        return samples;
    }

    /// Frames at which the materials of a sequence start, by material number: the mapper's lists begin there.
    std::map<int, int> FirstFramesOfMaterials(const COrvelSequence& sequence) const
    {
        std::map<int, int> starts;
        for (const FileNode& entry : tree.nodes) {
            auto* const object = dynamic_cast<COrvel3DObject*>(entry.node);
            if (!object || !materials.PositionOf(entry.material) || starts.contains(entry.material))
                continue;
            std::vector<int> frames;
            sequence.ListKeyFrameNumbers(object->Material()->ID(), frames);
            if (!frames.empty())
                starts.emplace(entry.material, frames.front());
        }
        return starts;
    }

    /// @param numbers from frame `start` on; the first and the last one hold outside.
    void AddMaterialTrack(int number, const std::vector<int>& numbers, int start, int lastFrame, ordered_json& clip)
    {
        const auto position = materials.PositionOf(number);
        if (!position || numbers.empty())
            return;
        Rows rows{LookWidth, {}};
        for (int frame = 0; frame <= lastFrame; ++frame) {
            const int place = std::clamp(frame - start, 0, static_cast<int>(numbers.size()) - 1);
            const Look look = materials.LookOf(numbers[static_cast<std::size_t>(place)]);
            rows.values.insert(rows.values.end(), look.begin(), look.end());
        }
        ordered_json track{{"m", *position}};
        WriteNumbersTrack(rows, LookTolerance, track);
        clip["materials"].push_back(std::move(track));
    }

    void AddCamera(ordered_json& clip) const
    {
        const auto& flight = input.mapper.cameraAnimation;
        if (flight.empty())
            return;
        const double step = CameraStep();
        Rows rows{CameraWidth, {}};
        for (const auto& [camera, name] : flight) {
            for (const COrvel3DVertex& point : {camera.Position(), camera.LookAt()})
                for (const double number : {point.X(), point.Y(), point.Z()})
                    rows.values.push_back(StepsOf(number, step));
            for (const double number : {camera.CamUp().X(), camera.CamUp().Y(), camera.CamUp().Z()})
                rows.values.push_back(StepsOf(number, UpStep));
            rows.values.push_back(StepsOf(camera.FOV(), FieldOfViewStepInDegrees));
        }
        ordered_json track{{"t", step}};
        WriteNumbersTrack(rows, 1.0, track);
        clip["camera"] = std::move(track);
    }

    /// What the camera is near to stands for as much of its picture as the scene does from afar.
    double CameraStep() const
    {
        double size = std::max(sceneSize, 1e-9);
        double farthest = 0.0;
        for (const auto& [camera, name] : input.mapper.cameraAnimation) {
            size = std::min(size, (camera.LookAt() - camera.Position()).Length());
            farthest = std::max({farthest, camera.LookAt().Length(), camera.Position().Length()});
        }
        return ShortStep(std::max(PositionTolerance * size / 2.0, farthest / 1e8));
    }

    const PlayerInput& input;
    FileTree tree;
    NodeList nodes;
    DrivenMaterials materials;
    double sceneSize;
    bool hasMovingNodes = false;
    std::size_t otherPictures = 0;
    std::vector<ordered_json> clips;
    ordered_json sequences = ordered_json::array();
};

} // namespace

PlayerScript MakePlayerScript(const PlayerInput& input)
{
    PlayerScript script;
    DataMaker maker(input);
    const ordered_json data = maker.Make();
    script.otherPictures = maker.OtherPictures();
    if (data.is_null())
        return script;
    constexpr bool asciiOnly = true;
    script.moves = !data["clips"].empty();
    script.text = "var orvelPlayer = (function () {";
    script.text += PlayerRuntime();
    script.text += "return startPlayer(";
    script.text += data.dump(-1, ' ', asciiOnly, ordered_json::error_handler_t::replace);
    script.text += ");\n}());";
    script.text += PlayerCommands();
    return script;
}

} // namespace Orvel::Player
