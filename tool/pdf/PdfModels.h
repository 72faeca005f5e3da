#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace Orvel::Pdf
{

/// A PDF file cannot be read, or not what was asked for. `what()` reads after "cannot read FILE: ".
class PdfError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

enum class ModelFormat
{
    Prc,
    U3d,
    Unknown
};

/// A 3D model inside a PDF.
struct ModelStream
{
    ModelFormat format = ModelFormat::Unknown;
    std::string subtype;           ///< as the PDF has it: "PRC", "U3D", "model/prc"
    std::size_t page = 0;          ///< the first that shows it, counted from 1; 0: no page shows it
    std::string name;              ///< of the annotation, or of the embedded file; UTF-8; may be empty
    std::uint64_t storedBytes = 0; ///< as the PDF states; mostly compressed
};

/// The 3D models of a PDF file.
///
/// They are what the 3D annotations of the pages show, also by way of a shared run-time instance, and the models among
/// the embedded files of rich media annotations. They stand in the order of the pages and of the annotations on each,
/// every one once; 3D streams that no page shows come last, in the order of their object numbers. Nothing is asked of
/// the structure beyond that: a damaged file gives what can be found.
class PdfModels
{
public:
    /// Opens the file and finds the models.
    ///
    /// @param password of the user or the owner; needed for some encrypted files only.
    /// @throws PdfError when it is no PDF, is damaged beyond repair, or needs another password; std::bad_alloc.
    PdfModels(const std::filesystem::path& file, const std::optional<std::string>& password);
    PdfModels(const PdfModels&) = delete;
    PdfModels& operator=(const PdfModels&) = delete;
    ~PdfModels();

    [[nodiscard]] const std::vector<ModelStream>& Streams() const;

    /// The bytes of a model, decrypted and unpacked.
    ///
    /// @param stream       position in Streams().
    /// @param limitInBytes a stream that unpacks to more is refused before more than this is in memory.
    /// @throws PdfError when the stream cannot be unpacked, not even its beginning; std::bad_alloc.
    [[nodiscard]] std::vector<std::uint8_t> Bytes(std::size_t stream, std::uint64_t limitInBytes);

    /// What was wrong with the file since the last call and could be overcome.
    [[nodiscard]] std::vector<std::string> TakeWarnings();

private:
    class Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace Orvel::Pdf
