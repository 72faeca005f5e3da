#include "tests/tool/pdf/PdfBuilder.h"

#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>

namespace Orvel::Test
{

PdfBuilder::PdfBuilder()
{
    pdf.emptyPDF();
}

QPDFObjectHandle PdfBuilder::AddPage()
{
    QPDFObjectHandle page = pdf.makeIndirectObject(
        QPDFObjectHandle::parse("<< /Type /Page /MediaBox [0 0 200 300] /Annots [null 7 << /Subtype /Link >>] >>"));
    QPDFPageDocumentHelper(pdf).addPage(QPDFPageObjectHelper(page), false);
    return page;
}

QPDFObjectHandle PdfBuilder::Stream(const std::string& bytes, const std::string& dictionary)
{
    QPDFObjectHandle stream = QPDFObjectHandle::newStream(&pdf, bytes);
    stream.replaceDict(QPDFObjectHandle::parse(dictionary));
    return stream;
}

QPDFObjectHandle PdfBuilder::Model(const std::string& bytes, const std::string& subtype)
{
    return Stream(bytes, "<< /Type /3D /Subtype " + subtype + " >>");
}

void PdfBuilder::AddAnnotation(QPDFObjectHandle page, const std::string& name, QPDFObjectHandle artwork)
{
    QPDFObjectHandle annotation = QPDFObjectHandle::parse("<< /Type /Annot /Subtype /3D /Rect [0 0 9 9] >>");
    annotation.replaceKey("/NM", QPDFObjectHandle::newUnicodeString(name));
    annotation.replaceKey("/3DD", artwork);
    page.getKey("/Annots").appendItem(pdf.makeIndirectObject(annotation));
}

void PdfBuilder::AddRichMedia(QPDFObjectHandle page, QPDFObjectHandle assets)
{
    QPDFObjectHandle annotation = QPDFObjectHandle::parse(
        "<< /Type /Annot /Subtype /RichMedia /Rect [0 0 9 9] /RichMediaContent << /Assets << >> >> >>");
    annotation.getKey("/RichMediaContent").getKey("/Assets").replaceKey("/Names", assets);
    page.getKey("/Annots").appendItem(annotation);
}

void PdfBuilder::Write(const std::string& file, const std::string& userPassword)
{
    QPDFWriter writer(pdf, file.c_str());
    writer.setStaticID(true);
    if (!userPassword.empty())
        writer.setR6EncryptionParameters(userPassword.c_str(), "owner", true, true, true, true, true, true,
                                         qpdf_r3p_full, true);
    writer.write();
}

} // namespace Orvel::Test
