#pragma once

#include <string>

class QPDF;

namespace Orvel::Pdf
{

/// What a document says of itself. Texts in UTF-8; an empty one is left out.
struct DocumentInfo
{
    std::string title;
    std::string author;
    std::string subject;
    std::string producer; ///< program and version
    std::string date;     ///< of making, complete: "2024-05-06T07:08:09+02:00", or with Z in place of the offset
    std::string language; ///< as in RFC 3066: "en", "de-CH"
};

/// Writes it into the document twice, as information dictionary and as XMP, and sets the language; readers show the
/// title in place of the file's name.
void AddDocumentInfo(QPDF& pdf, const DocumentInfo& info);

} // namespace Orvel::Pdf
