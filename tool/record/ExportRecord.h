#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace Orvel
{
class COrvelPRCMapper;
}

namespace Orvel::Record
{

/// Version of the shape that WriteRecord gives. It grows when a member changes its meaning or goes; new members alone
/// leave it as it is.
inline constexpr int RecordVersion = 1;

/// What is known of a run beside its mapper.
struct RunFacts
{
    std::string clip;                     ///< that the timeline shows; empty: nothing moves
    std::string camera;                   ///< the active one; empty: none
    std::vector<std::string> sceneStates; ///< names in the order of the exported list, UTF-8
    double framesPerSecond = 24.0;        ///< of the timeline; the model itself counts frames only
    int lastFrame = 0;                    ///< of the timeline, which starts at 0
};

/// Writes everything that a mapper holds after an animated export as JSON (see docs/record-json.md): one object, one
/// line for each element of its lists. Equal mappers give equal text, whatever the addresses of their nodes.
///
/// @param mapper its nodes must be alive; they give names and paths.
/// @param out    its state tells whether all could be written.
void WriteRecord(const COrvelPRCMapper& mapper, const RunFacts& facts, std::ostream& out);

} // namespace Orvel::Record
