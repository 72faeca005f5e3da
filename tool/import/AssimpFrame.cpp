#include "tool/import/AssimpFrame.h"

#include "tool/import/ZipEntry.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <fstream>
#include <string>
#include <string_view>

namespace Orvel::Import
{

namespace
{

/// The turns that loaders give to z-up files, row by row.
constexpr std::array<std::array<double, 9>, 2> TurnsFromZUp{{
    {1, 0, 0, 0, 0, 1, 0, -1, 0}, // most
    {0, -1, 0, 0, 0, 1, -1, 0, 0} // x forward, y left
}};

/// The decimal number that was written in the file: 0.0254 rather than 0.02539999969.
double ShortestDecimal(float value)
{
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    double decimal = 0.0;
    std::from_chars(text.data(), end, decimal);
    return decimal;
}

/// 0 (unknown) for what cannot be the length of a unit.
double UnitOrUnknown(double unitInMillimetres)
{
    return std::isfinite(unitInMillimetres) && unitInMillimetres > 0.0 ? unitInMillimetres : 0.0;
}

COrvelMatrix MatrixFromTurn(const std::array<double, 9>& turn)
{
    return COrvelMatrix(
        {turn[0], turn[1], turn[2], 0, turn[3], turn[4], turn[5], 0, turn[6], turn[7], turn[8], 0, 0, 0, 0, 1});
}

bool HasTurn(const COrvelMatrix& matrix, const COrvelMatrix& turn)
{
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            if (matrix.M(row, column) != turn.M(row, column))
                return false;
    return true;
}

void UndoTurn(SceneFrame& frame)
{
    for (const auto& numbers : TurnsFromZUp) {
        const COrvelMatrix turn = MatrixFromTurn(numbers);
        if (!HasTurn(frame.root, turn))
            continue;
        frame.root = turn.Inverse() * frame.root;
        return;
    }
    frame.upAxis = UpAxis::Unknown;
}

/// The root is scale * turn exactly: nothing of the file's own stands in it.
void UndoUnitAndAxis(SceneFrame& frame, const aiMatrix4x4& root)
{
    float unitInMetres = root.a1;
    frame.upAxis = UpAxis::Y;
    if (root.b3 != 0.0F) {
        frame.upAxis = UpAxis::Z;
    } else if (root.b1 != 0.0F) {
        frame.upAxis = UpAxis::X;
        unitInMetres = root.b1;
    }
    frame.unitInMillimetres = UnitOrUnknown(1000.0 * ShortestDecimal(unitInMetres));
    frame.root = COrvelMatrix();
}

/// The loader turns with the cosine of the single precision quarter turn, which is not zero; undone with the same
/// number, the placement comes out clean.
void UndoMetresAndTurn(SceneFrame& frame)
{
    const double cosine = static_cast<double>(std::cos(-static_cast<float>(AI_MATH_HALF_PI)));
    const COrvelMatrix turn({1, 0, 0, 0, 0, cosine, 1, 0, 0, -1, cosine, 0, 0, 0, 0, 1});
    COrvelMatrix own = turn.Inverse() * frame.root;
    const double unitInMetres = ShortestDecimal(static_cast<float>(std::hypot(own.M(0, 0), own.M(1, 0), own.M(2, 0))));
    if (UnitOrUnknown(unitInMetres) == 0.0)
        return;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 4; ++column)
            own.M(row, column) /= unitInMetres;
    frame.unitInMillimetres = 1000.0 * unitInMetres;
    frame.root = own;
}

void ReadFbxSettings(SceneFrame& frame, const aiMetadata* settings, ImportReport& report)
{
    float centimetres = 0.0F;
    if (settings != nullptr && settings->Get("UnitScaleFactor", centimetres))
        frame.unitInMillimetres = UnitOrUnknown(10.0 * ShortestDecimal(centimetres));
    int axis = -1;
    if (settings != nullptr && settings->Get("UpAxis", axis) && axis >= 0 && axis <= 2)
        frame.upAxis = std::array{UpAxis::X, UpAxis::Y, UpAxis::Z}[static_cast<std::size_t>(axis)];
    int sign = 1;
    if (settings != nullptr && settings->Get("UpAxisSign", sign) && sign < 0) {
        frame.upAxis = UpAxis::Unknown;
        report.Warn("the file's up axis points downwards and is not followed");
    }
}

struct NamedUnit
{
    std::string_view name;
    double inMillimetres;
};

constexpr auto NamedUnits = std::to_array<NamedUnit>({{"micron", 0.001},
                                                      {"millimeter", 1.0},
                                                      {"centimeter", 10.0},
                                                      {"inch", 25.4},
                                                      {"foot", 304.8},
                                                      {"feet", 304.8},
                                                      {"meter", 1000.0}});

constexpr std::string_view Blanks = " \t\r\n";

std::string_view WithoutLeadingBlanks(std::string_view text)
{
    return text.substr(std::min(text.find_first_not_of(Blanks), text.size()));
}

/// Value of an attribute in a start tag; empty when there is none.
std::string_view AttributeValue(std::string_view tag, std::string_view attribute)
{
    // From one equals sign to the next value in quotes: names inside values do not count.
    for (auto sign = tag.find('='); sign != std::string_view::npos; sign = tag.find('=')) {
        const std::string_view before = tag.substr(0, tag.find_last_not_of(Blanks, sign - 1) + 1);
        const std::string_view name = before.substr(before.find_last_of(Blanks) + 1);
        tag = WithoutLeadingBlanks(tag.substr(sign + 1));
        const auto end = tag.empty() || tag.find_first_of("\"'") != 0 ? std::string_view::npos : tag.find(tag[0], 1);
        if (end == std::string_view::npos)
            return {};
        if (name == attribute)
            return tag.substr(1, end - 1);
        tag.remove_prefix(end + 1);
    }
    return {};
}

/// Value of the attribute `unit` of the first element called `element` in the beginning of an XML file; millimetres
/// when there is none, as 3MF and AMF have it.
double UnitAttribute(std::string_view xml, std::string_view element)
{
    const auto start = xml.find("<" + std::string(element));
    const auto end = start == std::string_view::npos ? start : xml.find('>', start);
    if (end == std::string_view::npos)
        return 1.0;
    const std::string_view name = AttributeValue(xml.substr(start, end - start), "unit");
    const auto found = std::ranges::find(NamedUnits, name, &NamedUnit::name);
    return found != NamedUnits.end() ? found->inMillimetres : 1.0;
}

constexpr std::size_t BytesBeforeUnit = 8192; ///< enough for the XML declaration, comments and the first element

std::string BeginOfFile(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::string text(BytesBeforeUnit, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    return text;
}

} // namespace

COrvelMatrix MatrixFrom(const aiMatrix4x4& m)
{
    const auto d = [](ai_real value) { return static_cast<double>(value); };
    // The bottom row of an affine matrix is known. Loaders that multiply hand over one that is off by rounding.
    return COrvelMatrix({d(m.a1), d(m.a2), d(m.a3), d(m.a4), d(m.b1), d(m.b2), d(m.b3), d(m.b4), d(m.c1), d(m.c2),
                         d(m.c3), d(m.c4), 0.0, 0.0, 0.0, 1.0});
}

SceneFrame ReadSceneFrame(const aiScene& scene, const AssimpLoader& loader, const std::filesystem::path& file,
                          ImportReport& report)
{
    SceneFrame frame{loader.unitInMillimetres, loader.upAxis, MatrixFrom(scene.mRootNode->mTransformation)};
    if (loader.root == RootContent::Turned)
        UndoTurn(frame);
    else if (loader.root == RootContent::UnitAndAxis)
        UndoUnitAndAxis(frame, scene.mRootNode->mTransformation);
    else if (loader.root == RootContent::MetresAndTurned)
        UndoMetresAndTurn(frame);

    if (loader.name == "Autodesk FBX Importer")
        ReadFbxSettings(frame, scene.mMetaData, report);
    else if (loader.name == "3mf Importer")
        frame.unitInMillimetres = UnitAttribute(BeginOfZipEntry(file, ".model", BytesBeforeUnit), "model");
    else if (loader.format == "Additive Manufacturing File AMF")
        frame.unitInMillimetres = UnitAttribute(BeginOfFile(file), "amf");
    return frame;
}

} // namespace Orvel::Import
