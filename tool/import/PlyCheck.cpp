#include "tool/import/ImportReport.h"
#include "tool/import/MeshFileChecks.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <string>
#include <vector>

namespace Orvel::Import
{

namespace
{

constexpr std::string_view Blanks = " \t\r\n\v\f";

struct NamedType
{
    std::string_view name;
    std::size_t bytes;
};

constexpr auto Types = std::to_array<NamedType>({{"char", 1},
                                                 {"int8", 1},
                                                 {"uchar", 1},
                                                 {"uint8", 1},
                                                 {"short", 2},
                                                 {"int16", 2},
                                                 {"ushort", 2},
                                                 {"uint16", 2},
                                                 {"int", 4},
                                                 {"int32", 4},
                                                 {"uint", 4},
                                                 {"uint32", 4},
                                                 {"float", 4},
                                                 {"float32", 4},
                                                 {"double", 8},
                                                 {"float64", 8},
                                                 {"double64", 8}});

enum class Encoding
{
    Text,
    LittleEndian,
    BigEndian
};

struct Property
{
    std::size_t bytes = 0;      ///< of the value, or of each value of a list; 0: of a type that is not known
    std::size_t countBytes = 0; ///< of the number of values before a list; 0: no list
    bool isList = false;
};

struct Element
{
    std::string name;
    std::uint64_t count = 0;
    std::vector<Property> properties;
};

struct Header
{
    Encoding encoding = Encoding::Text;
    std::vector<Element> elements;
};

[[noreturn]] void ThrowCutShort(const Element& element, std::uint64_t present)
{
    throw ImportError("the file is cut short: of the element " + Quoted(element.name) + " it holds " +
                      std::to_string(present) + " of " + std::to_string(element.count));
}

std::string_view TakeWord(std::string_view& text)
{
    text.remove_prefix(std::min(text.find_first_not_of(Blanks), text.size()));
    const std::string_view word = text.substr(0, text.find_first_of(Blanks));
    text.remove_prefix(word.size());
    return word;
}

/// Takes a line with its line break, in the manner of any system.
std::string_view TakeLine(std::string_view& text)
{
    const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    text.remove_prefix(line.size());
    if (text.starts_with("\r\n"))
        text.remove_prefix(2);
    else if (!text.empty())
        text.remove_prefix(1);
    return line;
}

std::size_t BytesOf(std::string_view type)
{
    const auto found = std::ranges::find(Types, type, &NamedType::name);
    return found != Types.end() ? found->bytes : 0;
}

Encoding EncodingFrom(std::string_view name)
{
    if (name == "ascii")
        return Encoding::Text;
    if (name == "binary_little_endian")
        return Encoding::LittleEndian;
    if (name == "binary_big_endian")
        return Encoding::BigEndian;
    throw ImportError("the file is damaged: the format " + Quoted(name) + " in its header is not known");
}

Element ElementFrom(std::string_view line)
{
    Element element;
    element.name = TakeWord(line);
    const std::string_view count = TakeWord(line);
    const auto [end, error] = std::from_chars(count.data(), count.data() + count.size(), element.count);
    if (error != std::errc() || end != count.data() + count.size())
        throw ImportError("the file is damaged: its header gives no number of the element " + Quoted(element.name));
    return element;
}

Property PropertyFrom(std::string_view line)
{
    Property property;
    std::string_view type = TakeWord(line);
    if (type == "list") {
        property.isList = true;
        property.countBytes = BytesOf(TakeWord(line));
        type = TakeWord(line);
    }
    property.bytes = BytesOf(type);
    return property;
}

/// @param bytes in: the whole file; out: what follows the header.
Header TakeHeader(std::string_view& bytes)
{
    Header header;
    // The first line names the format of the file.
    for (TakeLine(bytes); !bytes.empty();) {
        std::string_view line = TakeLine(bytes);
        const std::string_view keyword = TakeWord(line);
        if (keyword == "end_header")
            return header;
        if (keyword == "format")
            header.encoding = EncodingFrom(TakeWord(line));
        else if (keyword == "element")
            header.elements.push_back(ElementFrom(line));
        else if (keyword == "property" && !header.elements.empty())
            header.elements.back().properties.push_back(PropertyFrom(line));
    }
    throw ImportError("the file is cut short: its header has no end");
}

/// Walks over the content of one element after the other and notices when there is less of it than counted. Every step
/// takes up at least a byte, so that the work is bounded by the size of the file and not by the counts in it.
class TextWalk
{
public:
    explicit TextWalk(std::string_view text)
        : rest(text)
    {}

    void Pass(const Element& element)
    {
        for (std::uint64_t k = 0; k < element.count; ++k) {
            PassComments();
            for (const Property& property : element.properties)
                if (!PassProperty(property))
                    ThrowCutShort(element, k);
        }
    }

private:
    void PassComments()
    {
        for (;;) {
            rest.remove_prefix(std::min(rest.find_first_not_of(Blanks), rest.size()));
            if (!rest.starts_with("comment"))
                return;
            TakeLine(rest);
        }
    }

    bool PassProperty(const Property& property)
    {
        const std::string_view word = TakeWord(rest);
        if (!property.isList || word.empty())
            return !word.empty();
        std::uint64_t count = 0;
        if (std::from_chars(word.data(), word.data() + word.size(), count).ec != std::errc())
            throw ImportError("the file is damaged: a list has the length " + Quoted(word));
        for (std::uint64_t k = 0; k < count; ++k)
            if (TakeWord(rest).empty())
                return false;
        return true;
    }

    std::string_view rest;
};

class BinaryWalk
{
public:
    BinaryWalk(std::string_view bytes, Encoding byteOrder)
        : rest(bytes)
        , encoding(byteOrder)
    {}

    void Pass(const Element& element)
    {
        std::size_t fixed = 0;
        for (const Property& property : element.properties) {
            if (property.bytes == 0 || (property.isList && property.countBytes == 0))
                throw ImportError("the file is damaged: the element " + Quoted(element.name) +
                                  " has a property of an unknown type");
            fixed += property.isList ? property.countBytes : property.bytes;
        }
        // Lists make it longer, never shorter.
        if (rest.size() / fixed < element.count)
            ThrowCutShort(element, rest.size() / fixed);
        if (std::ranges::none_of(element.properties, &Property::isList)) {
            rest.remove_prefix(fixed * element.count);
            return;
        }
        for (std::uint64_t k = 0; k < element.count; ++k)
            for (const Property& property : element.properties)
                if (!PassProperty(property))
                    ThrowCutShort(element, k);
    }

private:
    bool PassProperty(const Property& property)
    {
        std::uint64_t count = 1;
        if (property.isList) {
            if (rest.size() < property.countBytes)
                return false;
            count = TakeNumber(property.countBytes);
        }
        if (rest.size() / property.bytes < count)
            return false;
        rest.remove_prefix(property.bytes * count);
        return true;
    }

    std::uint64_t TakeNumber(std::size_t byteCount)
    {
        std::uint64_t number = 0;
        for (std::size_t k = 0; k < byteCount; ++k) {
            const std::size_t position = encoding == Encoding::BigEndian ? k : byteCount - 1 - k;
            number = number << 8 | static_cast<unsigned char>(rest[position]);
        }
        rest.remove_prefix(byteCount);
        return number;
    }

    std::string_view rest;
    Encoding encoding;
};

template <class Walk>
void PassAll(const std::vector<Element>& elements, Walk walk)
{
    for (const Element& element : elements) {
        if (element.count == 0)
            continue;
        if (element.properties.empty())
            throw ImportError("the file is damaged: the element " + Quoted(element.name) + " has no properties");
        walk.Pass(element);
    }
}

} // namespace

void CheckPly(std::string_view bytes)
{
    if (!bytes.starts_with("ply") && !bytes.starts_with("PLY"))
        return;
    const Header header = TakeHeader(bytes);
    if (header.encoding == Encoding::Text)
        PassAll(header.elements, TextWalk(bytes));
    else
        PassAll(header.elements, BinaryWalk(bytes, header.encoding));
}

} // namespace Orvel::Import
