#pragma once

#include "tool/pdf/Artwork.h"
#include "tool/pdf/PageFrame.h"

#include <qpdf/QPDF.hh>

#include <string>

namespace Orvel::Pdf
{

/// A row of buttons below a model.
struct ButtonRow
{
    QPDFObjectHandle page;
    QPDFObjectHandle annotation; ///< of the model, indirect
    Rectangle place;             ///< as seen on the page; the buttons stand along its lower edge
};

/// Adds a push button for each view of a model, which works without script, and two to play and pause what moves. They
/// become fields of the document's form, which is made where there is none.
///
/// @return how many found no place in the row.
std::size_t AddViewButtons(QPDF& pdf, const PageFrame& frame, const ButtonRow& row, const Artwork& artwork);

} // namespace Orvel::Pdf
