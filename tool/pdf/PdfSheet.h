#pragma once

#include "tool/pdf/Artwork.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace Orvel::Pdf
{

struct DocumentInfo;
struct PageDesign;
struct TemplatePlace;

/// A PDF file with a place for a model: a new page, or one of a file that is there already.
class PdfSheet
{
public:
    /// A document of one page.
    ///
    /// @throws PdfError when the page has no room for a model.
    PdfSheet(const PageDesign& design, const DocumentInfo& info);

    /// The file with its place; everything else in it stays.
    ///
    /// @param hasButtons the lower edge of the place is kept for them.
    /// @throws PdfError, its text reading after the name of the file, when there is no such place or the file cannot be
    ///         used.
    PdfSheet(const TemplatePlace& place, bool hasButtons);

    PdfSheet(const PdfSheet&) = delete;
    PdfSheet& operator=(const PdfSheet&) = delete;
    ~PdfSheet();

    /// The size of the model as it is seen, in points.
    [[nodiscard]] double ModelWidth() const;
    [[nodiscard]] double ModelHeight() const;

    /// Puts the model into its place, once.
    ///
    /// @param poster of the proportions of the place.
    void Place(const Artwork& artwork, const Poster& poster);

    /// Writes the file. Equal input gives equal bytes.
    ///
    /// @throws std::system_error when it cannot be written; PdfError when the template turns out to be damaged.
    void Write(const std::filesystem::path& file);

    /// What the user should know, a line each.
    [[nodiscard]] const std::vector<std::string>& Warnings() const;

private:
    class Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace Orvel::Pdf
