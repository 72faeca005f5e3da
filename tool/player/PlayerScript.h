#pragma once

#include "tool/record/ExportRecord.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Orvel
{
class COrvelDocument;
class COrvelKeyFrameManager;
class COrvelPRCMapper;
class COrvelSequence;
} // namespace Orvel

namespace prc::Model
{
struct PRCModel;
}

namespace Orvel::Player
{

/// What a player is made of: a document after its animated export, and what that export has left.
struct PlayerInput
{
    const COrvelDocument& document;
    const COrvelPRCMapper& mapper;    ///< filled by the export of `document`
    const Record::RunFacts& facts;    ///< of the same export
    const prc::Model::PRCModel& file; ///< what it wrote, read back
    /// Both as they were exported. Not const: evaluating moves working frames.
    COrvelKeyFrameManager& timeline;
    std::vector<COrvelSequence*> sequences;
    bool startsPlaying = true; ///< as soon as the viewer shows the scene
};

struct PlayerScript
{
    std::string text;   ///< ASCII, ECMAScript 3; empty when there is nothing to drive
    bool moves = false; ///< there is something to play
    std::size_t otherPictures =
        0; ///< materials of scene states that differ in their picture: the player shows no other
};

/// Makes the script that plays a scene inside a viewer: node motion, material animation, scene states, sequences, the
/// flight of the camera, and nodes that start hidden. docs/player.md tells what viewers and pages see of it.
///
/// Data are quantised to what is visible and reduced to key frames; nodes without meshes at or below them are left out.
/// Takes time and text in proportion to what moves. Equal input gives equal text.
[[nodiscard]] PlayerScript MakePlayerScript(const PlayerInput& input);

} // namespace Orvel::Player
