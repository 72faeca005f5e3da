#include "tool/pdf/PdfModels.h"

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFNameTreeObjectHelper.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>

#include <algorithm>
#include <cctype>
#include <exception>
#include <new>
#include <set>
#include <string_view>
#include <utility>

namespace Orvel::Pdf
{

namespace
{

/// Null for whatever is no dictionary: QPDF itself would warn.
QPDFObjectHandle Member(QPDFObjectHandle object, const char* key)
{
    if (object.isStream())
        object = object.getDict();
    return object.isDictionary() ? object.getKey(key) : QPDFObjectHandle::newNull();
}

std::string NameOf(QPDFObjectHandle object)
{
    return object.isName() ? object.getName().substr(1) : std::string();
}

std::string TextOf(QPDFObjectHandle object)
{
    return object.isString() ? object.getUTF8Value() : std::string();
}

/// @param text a subtype ("PRC", "model/prc") or the name of a file.
ModelFormat FormatOf(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    for (const auto& [ending, format] : {std::pair{"prc", ModelFormat::Prc}, {"u3d", ModelFormat::U3d}}) {
        if (text.size() >= 3 && text.compare(text.size() - 3, 3, ending) == 0)
            return format;
    }
    return ModelFormat::Unknown;
}

/// Keeps what is written to it, up to a limit.
class LimitedBytes final : public Pipeline
{
public:
    explicit LimitedBytes(std::uint64_t limitInBytes)
        : Pipeline("model", nullptr)
        , limit(limitInBytes)
    {}

    void write(const unsigned char* data, std::size_t size) override
    {
        if (failure)
            return;
        try {
            if (size > limit - bytes.size())
                throw PdfError("the model unpacks to more than " + std::to_string(limit) +
                               " bytes (--unpack-limit raises the limit)");
            bytes.insert(bytes.end(), data, data + size);
        } catch (...) {
            // QPDF takes every exception from here for damage of the stream.
            failure = std::current_exception();
            throw;
        }
    }

    void finish() override {}

    /// @throws PdfError, std::bad_alloc: what ended the writing.
    std::vector<std::uint8_t> Take()
    {
        if (failure)
            std::rethrow_exception(failure);
        return std::move(bytes);
    }

private:
    std::uint64_t limit;
    std::vector<std::uint8_t> bytes;
    std::exception_ptr failure;
};

void OpenFile(QPDF& pdf, const std::filesystem::path& file, const std::optional<std::string>& password)
{
    pdf.setSuppressWarnings(true);
    try {
        pdf.processFile(file.c_str(), password ? password->c_str() : nullptr);
    } catch (const QPDFExc& error) {
        if (error.getErrorCode() == qpdf_e_password)
            throw PdfError(password ? "the password is wrong" : "it is encrypted and needs a --password");
        throw PdfError(error.getMessageDetail());
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        throw PdfError(error.what());
    }
}

/// Finds the 3D streams of a document.
class StreamSearch
{
public:
    explicit StreamSearch(QPDF& searched)
        : pdf(searched)
    {}

    void Run()
    {
        std::size_t number = 0;
        for (QPDFPageObjectHelper& page : QPDFPageDocumentHelper(pdf).getAllPages()) {
            ++number;
            QPDFObjectHandle annotations = Member(page.getObjectHandle(), "/Annots");
            const int count = annotations.isArray() ? annotations.getArrayNItems() : 0;
            for (int i = 0; i < count; ++i)
                VisitAnnotation(annotations.getArrayItem(i), number);
        }
        for (QPDFObjectHandle& object : pdf.getAllObjects()) {
            if (object.isStream() && NameOf(Member(object, "/Type")) == "3D")
                Add(object, 0, "", NameOf(Member(object, "/Subtype")));
        }
    }

    std::vector<ModelStream> streams;
    std::vector<QPDFObjectHandle> objects; ///< of `streams`

private:
    void VisitAnnotation(const QPDFObjectHandle& annotation, std::size_t page)
    {
        QPDFObjectHandle artwork = Member(annotation, "/3DD");
        if (artwork.isDictionary())
            artwork = Member(artwork, "/3DD"); // an instance that several annotations share
        Add(artwork, page, TextOf(Member(annotation, "/NM")), NameOf(Member(artwork, "/Subtype")));

        QPDFObjectHandle assets = Member(Member(annotation, "/RichMediaContent"), "/Assets");
        if (!assets.isDictionary())
            return;
        for (const auto& [name, file] : QPDFNameTreeObjectHelper(assets, pdf, false))
            VisitAsset(name, file, page);
    }

    void VisitAsset(const std::string& name, const QPDFObjectHandle& file, std::size_t page)
    {
        const QPDFObjectHandle embedded = Member(file, "/EF");
        QPDFObjectHandle stream = Member(embedded, "/F");
        if (!stream.isStream())
            stream = Member(embedded, "/UF");
        // Scripts and pictures are embedded in the same way.
        const std::string subtype = NameOf(Member(stream, "/Subtype"));
        for (const std::string& hint : {subtype, name}) {
            if (FormatOf(hint) != ModelFormat::Unknown) {
                Add(stream, page, name, hint);
                return;
            }
        }
    }

    /// @param subtype or whatever tells the format.
    void Add(QPDFObjectHandle stream, std::size_t page, const std::string& name, const std::string& subtype)
    {
        if (!stream.isStream() || !found.insert(stream.getObjGen()).second)
            return;
        QPDFObjectHandle length = Member(stream, "/Length");
        const long long stored = length.isInteger() ? std::max(length.getIntValue(), 0LL) : 0;
        streams.push_back({FormatOf(subtype), subtype, page, name, static_cast<std::uint64_t>(stored)});
        objects.push_back(stream);
    }

    QPDF& pdf;
    std::set<QPDFObjGen> found;
};

} // namespace

class PdfModels::Impl
{
public:
    Impl(const std::filesystem::path& file, const std::optional<std::string>& password)
    {
        OpenFile(pdf, file, password);
        StreamSearch search(pdf);
        try {
            search.Run();
        } catch (const QPDFExc& error) {
            throw PdfError(error.getMessageDetail());
        }
        streams = std::move(search.streams);
        objects = std::move(search.objects);
    }

    QPDF pdf; // first: it is the owner of the objects
    std::vector<ModelStream> streams;
    std::vector<QPDFObjectHandle> objects;
};

PdfModels::PdfModels(const std::filesystem::path& file, const std::optional<std::string>& password)
    : impl(std::make_unique<Impl>(file, password))
{}

PdfModels::~PdfModels() = default;

const std::vector<ModelStream>& PdfModels::Streams() const
{
    return impl->streams;
}

std::vector<std::uint8_t> PdfModels::Bytes(std::size_t stream, std::uint64_t limitInBytes)
{
    LimitedBytes target(limitInBytes);
    bool filtered = false;
    const bool complete = impl->objects[stream].pipeStreamData(&target, &filtered, 0, qpdf_dl_specialized);
    std::vector<std::uint8_t> bytes = target.Take();
    if (complete && !filtered)
        throw PdfError("the model is compressed in a way that is not known");
    // The reader tells how far the beginning of a damaged model goes.
    if (!complete && bytes.empty())
        throw PdfError("the model is damaged and cannot be unpacked");
    return bytes;
}

std::vector<std::string> PdfModels::TakeWarnings()
{
    std::vector<std::string> warnings;
    for (const QPDFExc& warning : impl->pdf.getWarnings())
        warnings.push_back(warning.getMessageDetail());
    return warnings;
}

} // namespace Orvel::Pdf
