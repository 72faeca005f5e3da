#pragma once

#include <qpdf/QPDF.hh>

#include <string>

namespace Orvel::Test
{

/// Makes small PDF files with 3D models in them.
class PdfBuilder
{
public:
    PdfBuilder();

    /// @return the new last page.
    QPDFObjectHandle AddPage();

    QPDFObjectHandle Stream(const std::string& bytes, const std::string& dictionary = "<< >>");

    /// A 3D stream. @param subtype "/PRC", "/U3D".
    QPDFObjectHandle Model(const std::string& bytes, const std::string& subtype = "/PRC");

    /// @param artwork value of /3DD.
    void AddAnnotation(QPDFObjectHandle page, const std::string& name, QPDFObjectHandle artwork);

    /// @param assets names and embedded files in turns.
    void AddRichMedia(QPDFObjectHandle page, QPDFObjectHandle assets);

    /// @param userPassword encrypts the file unless it is empty.
    void Write(const std::string& file, const std::string& userPassword = {});

    QPDF pdf;
};

} // namespace Orvel::Test
