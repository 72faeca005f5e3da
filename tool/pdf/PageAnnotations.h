#pragma once

#include <qpdf/QPDFObjectHandle.hh>

#include <functional>
#include <string>

namespace Orvel::Pdf
{

/// Appends an annotation to a page and tells it where it stands.
///
/// The page gets an array of its own: it may share the one it has with other pages.
///
/// @param annotation indirect.
void AddAnnotation(QPDFObjectHandle page, QPDFObjectHandle annotation);

/// Takes the annotations away that `isMeant` accepts.
void RemoveAnnotations(QPDFObjectHandle page, const std::function<bool(QPDFObjectHandle)>& isMeant);

/// A name that no annotation of the page has: `name`, or that and a number.
[[nodiscard]] std::string UnusedAnnotationName(QPDFObjectHandle page, const std::string& name);

} // namespace Orvel::Pdf
