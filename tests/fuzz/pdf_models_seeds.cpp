#include "tests/tool/pdf/PdfBuilder.h"

#include <cstdio>
#include <string>

/// Writes the seeds of the fuzz target for PDF files into a folder: models in every place that they can have, plain and
/// encrypted.
namespace
{

void Write(const std::string& path, const std::string& password)
{
    Orvel::Test::PdfBuilder builder;
    QPDFObjectHandle page = builder.AddPage();
    builder.AddAnnotation(page, "plain", builder.Model("U3D", "/U3D"));
    QPDFObjectHandle instance = QPDFObjectHandle::parse("<< /Type /3DRef >>");
    instance.replaceKey("/3DD", builder.Model("PRC and many bytes, many bytes, many bytes"));
    builder.AddAnnotation(page, "shared", builder.pdf.makeIndirectObject(instance));
    QPDFObjectHandle file = QPDFObjectHandle::parse("<< /Type /Filespec /EF << >> >>");
    file.getKey("/EF").replaceKey("/F", builder.Stream("PRC", "<< /Subtype /model#2Fprc >>"));
    QPDFObjectHandle assets = QPDFObjectHandle::newArray();
    assets.appendItem(QPDFObjectHandle::newUnicodeString("a.prc"));
    assets.appendItem(file);
    builder.AddRichMedia(page, assets);
    builder.pdf.getRoot().replaceKey("/Spare", builder.Model("PRC nowhere"));
    builder.Write(path, password);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2) {
        std::fputs("pdf_models_seeds FOLDER\n", stderr);
        return 2;
    }
    Write(std::string(arguments[1]) + "/plain.pdf", "");
    Write(std::string(arguments[1]) + "/encrypted.pdf", "secret");
    return 0;
}
