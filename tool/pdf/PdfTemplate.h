#pragma once

#include "tool/pdf/TemplatePlace.h"

#include <qpdf/QPDF.hh>

#include <filesystem>
#include <string>
#include <vector>

namespace Orvel::Pdf
{

/// The place in the opened file.
struct FoundPlace
{
    QPDFObjectHandle page;
    Rectangle rectangle; ///< as seen on the page
};

/// Opens the file.
///
/// @param pdf without content.
/// @throws PdfError when it is no PDF, is damaged, or is encrypted.
void OpenTemplate(QPDF& pdf, const std::filesystem::path& file);

/// Finds the place. The widget of a field goes, and with its last one the field.
///
/// @throws PdfError when there is no such page or field, when several fit, or when the rectangle is not on the page.
[[nodiscard]] FoundPlace TakePlace(QPDF& pdf, const TemplatePlace& place);

/// What a change of the file spoils, a line for people each.
[[nodiscard]] std::vector<std::string> ReasonsAgainstChange(QPDF& pdf);

/// @throws PdfError when reading the file has met damage so far, even such as can be mended: what a changed copy lacks
///         would go unnoticed.
void RefuseDamage(QPDF& pdf);

} // namespace Orvel::Pdf
