#pragma once

#include "platform/prcfile/PRCModel.h"
#include "tool/import/MappedFile.h"
#include "tool/pdf/PdfModels.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace Orvel::Cli
{

/// Which model a command shall read, and what may become of it.
struct ModelInput
{
    std::string file;                    ///< a PRC file, or a PDF file that holds one
    std::optional<std::size_t> stream;   ///< of a PDF, counted from 1; nothing: its first PRC model
    std::optional<std::string> password; ///< of a PDF
    /// In bytes, of the stream of a PDF, and of the sections of a PRC file; nothing: in proportion to the file.
    std::optional<std::uint64_t> unpackLimit;
};

/// The models of a PDF, and the one that was chosen.
struct PdfOrigin
{
    std::vector<Pdf::ModelStream> streams;
    std::size_t chosen = 0; ///< position in `streams`
};

/// The bytes of a PRC file that stands by itself or inside a PDF.
class ModelSource
{
public:
    /// Opens the file, and takes the model out of a PDF.
    ///
    /// @throws Failure when the file cannot be read or holds no PRC model, or not the one that is asked for.
    explicit ModelSource(const ModelInput& input);

    [[nodiscard]] std::span<const std::uint8_t> Bytes() const;

    /// Nothing for a file that is no PDF.
    [[nodiscard]] const std::optional<PdfOrigin>& Pdf() const { return origin; }

    /// What the user should know of how the model was found.
    [[nodiscard]] const std::vector<std::string>& Warnings() const { return warnings; }

private:
    void OpenPdf(const ModelInput& input, std::uint64_t unpackLimit);

    std::optional<Import::MappedFile> file;
    std::vector<std::uint8_t> extracted;
    std::optional<PdfOrigin> origin;
    std::vector<std::string> warnings;
};

/// Reads the model.
///
/// @return with the reader's findings; at least the main header was read.
/// @throws Failure when the bytes are no PRC file.
[[nodiscard]] prc::Model::PRCModel ReadModel(const ModelSource& source, const ModelInput& input);

/// Whether the file begins as a PRC or PDF file does. A file that cannot be read does not.
[[nodiscard]] bool BeginsLikeModelFile(const std::string& path);

/// "PRC", "U3D", or the subtype as the PDF has it.
[[nodiscard]] std::string FormatName(const Pdf::ModelStream& stream);

} // namespace Orvel::Cli
