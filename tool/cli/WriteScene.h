#pragma once

#include "mapping/COrvelPRCMapper.h"
#include "tool/cli/ExportOptions.h"
#include "tool/record/ExportRecord.h"

#include <memory>
#include <string>

namespace Orvel
{
class COrvelDocument;
}

namespace Orvel::Cli
{

/// What an export writes before it is delivered.
struct ExportFiles
{
    std::string prc;
    std::string pdf;       ///< that shows the PRC file, which is no result then; empty: none
    std::string record;    ///< empty: none
    std::string animation; ///< empty: none
};

/// What an animated export leaves for those who drive a viewer.
struct AnimatedRun
{
    COrvelPRCMapper mapper;
    Record::RunFacts facts;
};

/// Writes a document as PRC.
///
/// @param animated of the document; its manager is handed to the process. Null: nothing moves.
/// @param prcFile  the file to write; the options tell how the user calls the output.
/// @return what the animated run recorded; null for the plain run.
/// @throws Failure when the file cannot be written.
std::unique_ptr<AnimatedRun> WriteScene(COrvelDocument& document, Animate::AnimatedScene* animated,
                                        const std::string& prcFile, const ExportOptions& options);

/// Writes the record of a run as JSON.
///
/// @param file the file to write; the options tell how the user calls it.
/// @throws Failure when it cannot be written.
void WriteRecordFile(const AnimatedRun& run, const std::string& file, const ExportOptions& options);

} // namespace Orvel::Cli
