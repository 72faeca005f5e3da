#include "tool/pdf/ArtworkObjects.h"

#include <qpdf/Pipeline.hh>

#include <algorithm>
#include <cmath>
#include <functional>
#include <string_view>
#include <utility>

namespace Orvel::Pdf
{

namespace
{

QPDFObjectHandle Dictionary(const char* type)
{
    QPDFObjectHandle dictionary = QPDFObjectHandle::newDictionary();
    dictionary.replaceKey("/Type", Name(type));
    return dictionary;
}

const char* SpanName(Views::Span span)
{
    switch (span) {
    case Views::Span::Width:
        return "W";
    case Views::Span::Height:
        return "H";
    case Views::Span::Smaller:
        break;
    }
    return "Min";
}

QPDFObjectHandle MakeProjection(const Views::View& view)
{
    QPDFObjectHandle projection = QPDFObjectHandle::newDictionary();
    if (view.projection == Views::Projection::Perspective) {
        projection.replaceKey("/Subtype", Name("P"));
        projection.replaceKey("/FOV", Number(view.fieldOfViewInDegrees));
        projection.replaceKey("/PS", Name(SpanName(view.span)));
    } else {
        projection.replaceKey("/Subtype", Name("O"));
        projection.replaceKey("/OB", Name(SpanName(view.span)));
        projection.replaceKey("/OS", Number(1.0 / view.size));
    }
    return projection;
}

QPDFObjectHandle MakeActivation(const Artwork& artwork)
{
    constexpr std::array<const char*, 3> Names{"XA", "PV", "PO"};
    QPDFObjectHandle activation = QPDFObjectHandle::newDictionary();
    activation.replaceKey("/A", Name(Names[static_cast<std::size_t>(artwork.activation)]));
    activation.replaceKey("/AIS", Name("L"));
    activation.replaceKey("/D", Name("PI"));
    activation.replaceKey("/DIS", Name("U"));
    activation.replaceKey("/TB", QPDFObjectHandle::newBool(artwork.toolbar));
    activation.replaceKey("/NP", QPDFObjectHandle::newBool(artwork.modelTree));
    return activation;
}

/// The unit that the model was created in: a label that stands for so many of the model's lengths.
QPDFObjectHandle MakeUnits(double unitInMillimetres)
{
    const std::array<std::pair<double, const char*>, 5> named{
        {{1.0, "mm"}, {10.0, "cm"}, {1000.0, "m"}, {25.4, "in"}, {304.8, "ft"}}};
    const auto found = std::ranges::find_if(
        named, [&](const auto& unit) { return std::abs(unit.first - unitInMillimetres) < 1e-9 * unit.first; });
    const bool hasName = found != named.end();
    QPDFObjectHandle units = QPDFObjectHandle::newDictionary();
    units.replaceKey("/TU", Text(hasName ? found->second : "mm"));
    units.replaceKey("/TSm", Number(hasName ? 1.0 : unitInMillimetres));
    units.replaceKey("/TSn", Number(1.0));
    return units;
}

} // namespace

QPDFObjectHandle MakeViewDictionary(const Views::View& view, const Artwork& artwork)
{
    const Views::ViewFrame frame = Views::FrameOf(view);
    // Right-handed, with the third axis along the line of sight: the first one points to the viewer's left.
    const Eigen::Vector3d x = -frame.right;
    const Eigen::Vector3d& y = frame.up;
    const Eigen::Vector3d& z = frame.forward;
    const Eigen::Vector3d& eye = view.eye;
    QPDFObjectHandle dictionary = Dictionary("3DView");
    dictionary.replaceKey("/XN", Text(view.name));
    dictionary.replaceKey("/IN", Text(view.name));
    dictionary.replaceKey("/MS", Name("M"));
    dictionary.replaceKey(
        "/C2W", Numbers({x.x(), x.y(), x.z(), y.x(), y.y(), y.z(), z.x(), z.y(), z.z(), eye.x(), eye.y(), eye.z()}));
    dictionary.replaceKey("/CO", Number((view.target - view.eye).norm()));
    dictionary.replaceKey("/P", MakeProjection(view));
    QPDFObjectHandle background = QPDFObjectHandle::parse("<< /Type /3DBG /Subtype /SC /CS /DeviceRGB >>");
    background.replaceKey("/C", ColourNumbers(artwork.background));
    dictionary.replaceKey("/BG", background);
    QPDFObjectHandle lighting = Dictionary("3DLightingScheme");
    lighting.replaceKey("/Subtype", Name(artwork.lighting));
    dictionary.replaceKey("/LS", lighting);
    QPDFObjectHandle renderMode = Dictionary("3DRenderMode");
    renderMode.replaceKey("/Subtype", Name(artwork.renderMode));
    dictionary.replaceKey("/RM", renderMode);
    return dictionary;
}

QPDFObjectHandle MakeArtworkStream(QPDF& pdf, const Artwork& artwork)
{
    QPDFObjectHandle stream = QPDFObjectHandle::newStream(&pdf);
    QPDFObjectHandle dictionary = stream.getDict();
    dictionary.replaceKey("/Type", Name("3D"));
    dictionary.replaceKey("/Subtype", Name("PRC"));
    QPDFObjectHandle views = QPDFObjectHandle::newArray();
    for (const Views::View& view : artwork.views)
        views.appendItem(pdf.makeIndirectObject(MakeViewDictionary(view, artwork)));
    dictionary.replaceKey("/VA", views);
    dictionary.replaceKey("/DV", QPDFObjectHandle::newInteger(static_cast<long long>(artwork.defaultView)));
    if (!artwork.script.empty())
        dictionary.replaceKey("/OnInstantiate", QPDFObjectHandle::newStream(&pdf, artwork.script));
    const std::function<void(Pipeline*)> provide = [prc = artwork.prc](Pipeline* pipeline) {
        pipeline->write(prc.data(), prc.size());
        pipeline->finish();
    };
    stream.replaceStreamData(provide, QPDFObjectHandle::newNull(), QPDFObjectHandle::newNull());
    // Its sections are deflated already, and programs that look for models find the signature.
    stream.setFilterOnWrite(false);
    return stream;
}

QPDFObjectHandle MakeAnnotation(const Artwork& artwork, QPDFObjectHandle stream, const std::string& name)
{
    QPDFObjectHandle annotation = Dictionary("Annot");
    annotation.replaceKey("/Subtype", Name("3D"));
    annotation.replaceKey("/F", QPDFObjectHandle::newInteger(4)); // is printed
    annotation.replaceKey("/NM", Text(name));
    annotation.replaceKey("/Contents", Text(artwork.description));
    annotation.replaceKey("/Border", Numbers({0, 0, 0}));
    annotation.replaceKey("/3DD", stream);
    annotation.replaceKey("/3DV", stream.getDict().getKey("/VA").getArrayItem(static_cast<int>(artwork.defaultView)));
    annotation.replaceKey("/3DA", MakeActivation(artwork));
    annotation.replaceKey("/3DI", QPDFObjectHandle::newBool(true));
    annotation.replaceKey("/3DU", MakeUnits(artwork.unitInMillimetres));
    return annotation;
}

QPDFObjectHandle MakeImage(QPDF& pdf, const Poster& poster)
{
    const auto width = QPDFObjectHandle::newInteger(poster.width);
    QPDFObjectHandle image = QPDFObjectHandle::newStream(&pdf);
    image.replaceDict(QPDFObjectHandle::parse(
        "<< /Type /XObject /Subtype /Image /ColorSpace /DeviceRGB /BitsPerComponent 8 /Interpolate true >>"));
    image.getDict().replaceKey("/Width", width);
    image.getDict().replaceKey("/Height", QPDFObjectHandle::newInteger(poster.height));
    // The rows carry the filters of PNG, which PDF knows as a predictor.
    QPDFObjectHandle parameters = QPDFObjectHandle::parse("<< /Predictor 15 /Colors 3 /BitsPerComponent 8 >>");
    parameters.replaceKey("/Columns", width);
    image.replaceStreamData(std::string(poster.deflatedRows.begin(), poster.deflatedRows.end()), Name("FlateDecode"),
                            parameters);
    return image;
}

} // namespace Orvel::Pdf
