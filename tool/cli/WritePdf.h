#pragma once

#include "tool/cli/ExportOptions.h"
#include "tool/cli/ExportSummary.h"
#include "tool/cli/WorkChannel.h"
#include "tool/cli/WriteScene.h"
#include "tool/pdf/PdfSheet.h"

#include <memory>
#include <string>
#include <vector>

namespace Orvel::Cli
{

/// The page for the model: new, or of the template.
///
/// @throws Failure when there is no place for a model.
[[nodiscard]] std::unique_ptr<Pdf::PdfSheet> MakeSheet(const ExportOptions& options);

/// Writes the PDF that shows an exported scene. The PRC file is read back: picture, views and script are those of what
/// is stored.
///
/// @param sheet of MakeSheet.
/// @param run   null: nothing moves.
/// @return the names of the views.
/// @throws Failure when the PDF cannot be written, or its template cannot be used.
std::vector<std::string> WriteScenePdf(Pdf::PdfSheet& sheet, const Import::LoadedDocument& loaded,
                                       const AnimatedRun* run, const ExportFiles& files, const ExportOptions& options,
                                       const WorkReporter& reporter);

/// Writes a PDF that shows a model that is PRC already.
///
/// @throws Failure as above, or when the model cannot be read.
ExportSummary WriteModelPdf(Pdf::PdfSheet& sheet, const ExportFiles& files, const ExportOptions& options,
                            const WorkReporter& reporter);

} // namespace Orvel::Cli
