#include "tests/support/PRCDecoderSections.h"

#include <algorithm>
#include <limits>

namespace Orvel::Test
{
namespace
{

using Reader = PRCSectionReader;

constexpr Matrix identity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

struct Box
{
    static constexpr double infinity = std::numeric_limits<double>::infinity();
    Vector3 minimum{infinity, infinity, infinity};
    Vector3 maximum{-infinity, -infinity, -infinity};
};

void Extend(Box& box, const RepresentationItem& item, const PRCContent& content)
{
    for (const RepresentationItem& inner : item.items)
        Extend(box, inner, content);
    if (!item.tessellation)
        return;
    for (const Vector3& point : content.tessellations[*item.tessellation].points) {
        for (size_t axis = 0; axis < 3; ++axis) {
            box.minimum[axis] = std::min(box.minimum[axis], point[axis]);
            box.maximum[axis] = std::max(box.maximum[axis], point[axis]);
        }
    }
}

/// A box holds its points, has room on each axis, and is tight: only an axis on which the points are flat may be
/// widened.
void CheckBox(const Reader& reader, const Part& part, const PRCContent& content)
{
    Box box;
    for (const RepresentationItem& item : part.items)
        Extend(box, item, content);
    double largest = 0;
    for (size_t axis = 0; axis < 3; ++axis)
        largest = std::max(largest, box.maximum[axis] - box.minimum[axis]);
    for (size_t axis = 0; axis < 3; ++axis) {
        const double low = part.minimum[axis], high = part.maximum[axis];
        reader.Require(low < high, "bounding box without extent");
        if (box.minimum[axis] > box.maximum[axis])
            continue; // a part without points
        reader.Require(low <= box.minimum[axis] && box.maximum[axis] <= high, "point outside the bounding box");
        const bool isFlat = box.maximum[axis] - box.minimum[axis] <= 1e-3 * largest;
        const bool isExact = low == box.minimum[axis] && high == box.maximum[axis];
        reader.Require(isExact || isFlat || !reader.IsOwnWriter(), "bounding box is larger than its points");
    }
}

RepresentationItem DecodeItem(Reader& reader, const PRCContent& content, int depth)
{
    RepresentationItem item;
    const uint32_t type = reader.UnsignedInteger();
    item.isSet = type == static_cast<uint32_t>(EntityType::Set);
    const bool isAllowedSet = item.isSet && !reader.IsOwnWriter() && depth < 64;
    reader.Require(type == static_cast<uint32_t>(EntityType::PolyBrepModel) || isAllowedSet,
                   "representation item of an unexpected type");
    auto [name, style] = reader.BaseWithGraphics(content.styles.size());
    item.name = std::move(name);
    item.style = style;
    reader.ExpectUnsigned(0, "coordinate system index + 1");
    item.tessellation = reader.OptionalIndex(content.tessellations.size(), "tessellation");
    reader.Require(item.isSet != item.tessellation.has_value(), "mesh without or set with a tessellation");
    if (item.isSet) {
        const size_t count = reader.Count(30);
        for (size_t i = 0; i < count; ++i)
            item.items.push_back(DecodeItem(reader, content, depth + 1));
    } else {
        item.isClosed = reader.Bit();
    }
    reader.ExpectNoUserData();
    return item;
}

Part DecodePart(Reader& reader, const PRCContent& content)
{
    Part part;
    reader.Expect(EntityType::PartDefinition);
    auto [name, style] = reader.BaseWithGraphics(content.styles.size());
    part.name = std::move(name);
    part.style = style;
    part.minimum = reader.Vector();
    part.maximum = reader.Vector();
    const size_t count = reader.Count(30);
    reader.Require(count > 0, "part without representation items");
    for (size_t i = 0; i < count; ++i)
        part.items.push_back(DecodeItem(reader, content, 0));
    CheckBox(reader, part, content);
    reader.ExpectNoMarkup();
    reader.ExpectUnsigned(0, "view count");
    reader.ExpectNoUserData();
    return part;
}

std::optional<Matrix> DecodeLocation(Reader& reader)
{
    if (!reader.Bit())
        return std::nullopt;
    reader.Expect(EntityType::GeneralTransformation);
    Matrix matrix{};
    for (size_t column = 0; column < 4; ++column) {
        for (size_t row = 0; row < 4; ++row)
            matrix[4 * row + column] = reader.Double();
    }
    reader.Require(std::equal(matrix.begin() + 12, matrix.end(), identity.begin() + 12), "location is not affine");
    reader.Require(matrix != identity || !reader.IsOwnWriter(), "location spells out the identity");
    return matrix;
}

/// @param ownIndex position of the occurrence; children stand before it.
ProductOccurrence DecodeOccurrence(Reader& reader, const PRCContent& content, size_t ownIndex)
{
    ProductOccurrence occurrence;
    reader.Expect(EntityType::ProductOccurrence);
    auto [name, style] = reader.BaseWithGraphics(content.styles.size());
    occurrence.name = std::move(name);
    occurrence.style = style;
    occurrence.part = reader.OptionalIndex(content.parts.size(), "part");
    reader.ExpectUnsigned(0, "prototype index + 1");
    reader.ExpectUnsigned(0, "external data index + 1");
    occurrence.children.resize(reader.Count(1));
    for (size_t& child : occurrence.children) {
        child = reader.UnsignedInteger();
        reader.Require(child < ownIndex, "child does not stand before its parent");
    }
    reader.ExpectCharacter(0, "product behaviour");
    reader.ExpectBit(false, "unit from the authoring system");
    reader.ExpectDouble(1, "unit of a product occurrence");
    reader.ExpectCharacter(0, "product flags");
    reader.ExpectInteger(0, "load status");
    occurrence.location = DecodeLocation(reader);
    reader.ExpectUnsigned(0, "entity reference count");
    reader.ExpectNoMarkup();
    reader.ExpectUnsigned(0, "view count");
    reader.ExpectBit(false, "entity filter");
    reader.ExpectUnsigned(0, "display filter count");
    reader.ExpectUnsigned(0, "scene display parameter count");
    reader.ExpectNoUserData();
    return occurrence;
}

/// Every occurrence except the root, which is the last, is the child of exactly one other; every part is in use.
void CheckTree(const Reader& reader, const PRCContent& content)
{
    std::vector<size_t> parents(content.occurrences.size()), uses(content.parts.size());
    for (const ProductOccurrence& occurrence : content.occurrences) {
        for (const size_t child : occurrence.children)
            ++parents[child];
        if (occurrence.part)
            ++uses[*occurrence.part];
    }
    reader.Require(content.root + 1 == content.occurrences.size(), "root is not the last product occurrence");
    for (size_t i = 0; i < content.root; ++i)
        reader.Require(parents[i] == 1, "product occurrence without parent or with several");
    reader.Require(std::ranges::find(uses, 0u) == uses.end(), "part that no product occurrence uses");
    reader.Require(content.parts.empty() || !content.styles.empty(), "parts, but no style");
}

/// Identifiers are 1, 2, 3 ... in any order, without gap or repetition.
void CheckIdentifiers(Reader& reader, std::vector<uint32_t> identifiers)
{
    std::ranges::sort(identifiers);
    for (size_t i = 0; i < identifiers.size(); ++i)
        reader.Require(identifiers[i] == i + 1 || !reader.IsOwnWriter(), "unique identifiers are not 1, 2, 3 ...");
    reader.Require(std::ranges::adjacent_find(identifiers) == identifiers.end(), "unique identifier used twice");
    reader.ExpectUnsigned(identifiers.empty() ? 1 : identifiers.back() + 1, "next free unique identifier");
}

} // namespace

void DecodeTree(PRCSectionReader& reader, PRCContent& content, const std::vector<uint32_t>& identifiers)
{
    reader.Expect(EntityType::Tree);
    reader.ExpectUnnamedBase();
    const size_t partCount = reader.Count(40);
    for (size_t i = 0; i < partCount; ++i)
        content.parts.push_back(DecodePart(reader, content));
    const size_t occurrenceCount = reader.Count(40);
    for (size_t i = 0; i < occurrenceCount; ++i)
        content.occurrences.push_back(DecodeOccurrence(reader, content, i));
    reader.Expect(EntityType::FileStructure);
    reader.ExpectUnnamedBase();
    CheckIdentifiers(reader, identifiers);
    content.root = reader.Index(content.occurrences.size(), "root product occurrence");
    CheckTree(reader, content);
    reader.ExpectNoUserData();
    reader.Finish();
}

void DecodeModelFile(PRCSectionReader& reader, PRCContent& content)
{
    reader.ExpectUnsigned(0, "schema count");
    reader.Expect(EntityType::ModelFile);
    content.modelName = reader.Base();
    reader.Require(!reader.IsOwnWriter() || content.modelName == content.occurrences[content.root].name,
                   "model is not named after its root");
    reader.ExpectBit(true, "unit from the authoring system");
    content.unitInMillimetres = reader.Double();
    reader.Require(content.unitInMillimetres > 0, "unit is not positive");
    reader.ExpectUnsigned(1, "root count");
    reader.Require(reader.CompressedUniqueId() == content.structureId, "root lies in an unknown file structure");
    reader.ExpectUnsigned(static_cast<uint32_t>(content.root + 1), "root product occurrence index + 1");
    reader.ExpectBit(true, "root is active");
    reader.ExpectUnsigned(0, "file structure index");
    reader.ExpectNoUserData();
    reader.Finish();
}

} // namespace Orvel::Test
