#pragma once

#include "tool/animation/AnimatedScene.h"
#include "tool/cli/OutputTarget.h"
#include "tool/cli/PdfOptions.h"
#include "tool/cli/WorkLimits.h"
#include "tool/import/LoadDocument.h"

#include <optional>
#include <string>
#include <vector>

namespace Orvel::Cli
{

/// `orvelprc export`
struct ExportOptions
{
    std::string scene;
    std::string output;
    std::string record;                  ///< file for the record of the export; empty: none
    std::string saveAnimation;           ///< file to keep the scene's animation in; empty: none
    std::string loadAnimation;           ///< file that the animation comes from; empty: it is sampled from the scene
    Import::LoadOptions load;            ///< without its temporary folder
    std::string script;                  ///< file of a scene script; empty: none
    int turntableFrames = 0;             ///< of a camera's turn round the scene; 0: none
    Animate::AnimationOptions animation; ///< of what goes into the record and the PDF
    std::optional<PdfOptions> pdf;       ///< nothing: the output is a PRC file
    std::vector<std::string> forScenes;  ///< names of given options that mean nothing for a model that is PRC already
    int maximumTextureSize = 1024;       ///< pixels, 1 or more, of the larger side
    ExistingFile existing = ExistingFile::Replace;
    LimitOptions limits;
    bool quiet = false;   ///< neither warnings nor progress nor the summary as text
    bool strict = false;  ///< a warning makes the export fail
    bool json = false;    ///< the summary as JSON
    bool timings = false; ///< the summary tells how long each stage took
};

} // namespace Orvel::Cli
