#pragma once

#include "tool/pdf/Artwork.h"
#include "tool/pdf/PdfValues.h"
#include "tool/views/View.h"

#include <qpdf/QPDF.hh>

namespace Orvel::Pdf
{

/// The view dictionary of a camera: matrix from camera to world, orbit, projection, background, lights, render mode.
[[nodiscard]] QPDFObjectHandle MakeViewDictionary(const Views::View& view, const Artwork& artwork);

/// The 3D stream with its views, and its script; an indirect object of `pdf`.
///
/// The bytes of the model stand in the file as they are.
[[nodiscard]] QPDFObjectHandle MakeArtworkStream(QPDF& pdf, const Artwork& artwork);

/// A 3D annotation without the place where it stands (/Rect, /P, /AP), not indirect.
///
/// @param stream of MakeArtworkStream.
/// @param name   of the annotation, unique on its page.
[[nodiscard]] QPDFObjectHandle MakeAnnotation(const Artwork& artwork, QPDFObjectHandle stream, const std::string& name);

/// The picture as a stream.
[[nodiscard]] QPDFObjectHandle MakeImage(QPDF& pdf, const Poster& poster);

} // namespace Orvel::Pdf
