#include "tool/pdf/DocumentInfo.h"

#include "tool/pdf/PdfValues.h"

#include <qpdf/QPDF.hh>

#include <algorithm>
#include <string_view>

namespace Orvel::Pdf
{

namespace
{

std::string EscapedForXml(const std::string& text)
{
    std::string escaped;
    for (const char letter : text) {
        switch (letter) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        default:
            escaped += letter;
        }
    }
    return escaped;
}

/// "2024-05-06T07:08:09+02:00" -> "D:20240506070809+02'00'"
std::string PdfDate(const std::string& date)
{
    constexpr std::size_t LengthOfTime = 19;
    std::string digits = date.substr(0, LengthOfTime);
    std::erase_if(digits, [](char c) { return c < '0' || c > '9'; });
    std::string offset = date.substr(std::min(LengthOfTime, date.size()));
    if (offset.size() == 6)
        offset = offset.substr(0, 3) + "'" + offset.substr(4) + "'";
    return "D:" + digits + offset;
}

/// @param content XML. An empty text gives no element.
std::string Element(std::string_view name, std::string_view before, const std::string& text, std::string_view after)
{
    if (text.empty())
        return {};
    std::string element = "   <";
    element.append(name).append(">").append(before).append(EscapedForXml(text)).append(after);
    return element.append("</").append(name).append(">\n");
}

std::string Xmp(const DocumentInfo& info)
{
    constexpr std::string_view Alternative = "<rdf:Alt><rdf:li xml:lang=\"x-default\">";
    constexpr std::string_view EndOfAlternative = "</rdf:li></rdf:Alt>";
    std::string xmp = "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"
                      "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">\n"
                      " <rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n"
                      "  <rdf:Description rdf:about=\"\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\" "
                      "xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\" xmlns:pdf=\"http://ns.adobe.com/pdf/1.3/\">\n"
                      "   <dc:format>application/pdf</dc:format>\n";
    xmp += Element("dc:title", Alternative, info.title, EndOfAlternative);
    xmp += Element("dc:creator", "<rdf:Seq><rdf:li>", info.author, "</rdf:li></rdf:Seq>");
    xmp += Element("dc:description", Alternative, info.subject, EndOfAlternative);
    xmp += Element("dc:language", "<rdf:Bag><rdf:li>", info.language, "</rdf:li></rdf:Bag>");
    xmp += Element("xmp:CreatorTool", "", info.producer, "");
    for (const char* const name : {"xmp:CreateDate", "xmp:ModifyDate", "xmp:MetadataDate"})
        xmp += Element(name, "", info.date, "");
    xmp += Element("pdf:Producer", "", info.producer, "");
    return xmp + "  </rdf:Description>\n </rdf:RDF>\n</x:xmpmeta>\n<?xpacket end=\"w\"?>\n";
}

} // namespace

void AddDocumentInfo(QPDF& pdf, const DocumentInfo& info)
{
    QPDFObjectHandle dictionary = QPDFObjectHandle::newDictionary();
    const auto add = [&](const char* key, const std::string& text) {
        if (!text.empty())
            dictionary.replaceKey(key, Text(text));
    };
    add("/Title", info.title);
    add("/Author", info.author);
    add("/Subject", info.subject);
    add("/Creator", info.producer);
    add("/Producer", info.producer);
    if (!info.date.empty()) {
        add("/CreationDate", PdfDate(info.date));
        add("/ModDate", PdfDate(info.date));
    }
    pdf.getTrailer().replaceKey("/Info", pdf.makeIndirectObject(dictionary));

    QPDFObjectHandle metadata = QPDFObjectHandle::newStream(&pdf, Xmp(info));
    metadata.getDict().replaceKey("/Type", Name("Metadata"));
    metadata.getDict().replaceKey("/Subtype", Name("XML"));
    // Programs that do not know PDF find the packet by its marks.
    metadata.setFilterOnWrite(false);
    QPDFObjectHandle catalog = pdf.getRoot();
    catalog.replaceKey("/Metadata", metadata);
    if (!info.language.empty())
        catalog.replaceKey("/Lang", Text(info.language));
    if (!info.title.empty())
        catalog.replaceKey("/ViewerPreferences", QPDFObjectHandle::parse("<< /DisplayDocTitle true >>"));
}

} // namespace Orvel::Pdf
