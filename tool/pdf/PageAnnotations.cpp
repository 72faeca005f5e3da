#include "tool/pdf/PageAnnotations.h"

#include <set>

namespace Orvel::Pdf
{

namespace
{

/// The page's own array with the annotations of `page` that are kept.
QPDFObjectHandle Copied(QPDFObjectHandle page, const std::function<bool(QPDFObjectHandle)>& isKept)
{
    QPDFObjectHandle copy = QPDFObjectHandle::newArray();
    QPDFObjectHandle annotations = page.getKey("/Annots");
    const int count = annotations.isArray() ? annotations.getArrayNItems() : 0;
    for (int i = 0; i < count; ++i) {
        if (isKept(annotations.getArrayItem(i)))
            copy.appendItem(annotations.getArrayItem(i));
    }
    return copy;
}

} // namespace

void AddAnnotation(QPDFObjectHandle page, QPDFObjectHandle annotation)
{
    QPDFObjectHandle annotations = Copied(page, [](const QPDFObjectHandle&) { return true; });
    annotation.replaceKey("/P", page);
    annotations.appendItem(annotation);
    page.replaceKey("/Annots", annotations);
}

void RemoveAnnotations(QPDFObjectHandle page, const std::function<bool(QPDFObjectHandle)>& isMeant)
{
    page.replaceKey("/Annots", Copied(page, [&](const QPDFObjectHandle& annotation) { return !isMeant(annotation); }));
}

std::string UnusedAnnotationName(QPDFObjectHandle page, const std::string& name)
{
    std::set<std::string> used;
    QPDFObjectHandle annotations = page.getKey("/Annots");
    const int count = annotations.isArray() ? annotations.getArrayNItems() : 0;
    for (int i = 0; i < count; ++i) {
        QPDFObjectHandle annotation = annotations.getArrayItem(i);
        if (annotation.isDictionary() && annotation.getKey("/NM").isString())
            used.insert(annotation.getKey("/NM").getUTF8Value());
    }
    std::string unused = name;
    for (int number = 2; used.contains(unused); ++number)
        unused = name + " " + std::to_string(number);
    return unused;
}

} // namespace Orvel::Pdf
