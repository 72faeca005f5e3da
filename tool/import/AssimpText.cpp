#include "tool/import/AssimpText.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <utility>

namespace Orvel::Import
{

namespace
{

/// Windows-1252, 0x80 to 0x9F; the five codes without a character stand for themselves.
constexpr std::array<char32_t, 32> Windows1252{0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                               0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                               0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                               0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

unsigned char Byte(std::string_view text, std::size_t position)
{
    return position < text.size() ? static_cast<unsigned char>(text[position]) : 0;
}

/// Bytes of the UTF-8 character that begins at `position`; 0 when none does.
std::size_t Utf8Length(std::string_view text, std::size_t position)
{
    const unsigned char first = Byte(text, position);
    const unsigned char second = Byte(text, position + 1);
    if (first < 0x80)
        return 1;
    std::size_t length = 0;
    if (first >= 0xC2 && first <= 0xDF)
        length = 2;
    else if ((first & 0xF0) == 0xE0 && !(first == 0xE0 && second < 0xA0) && !(first == 0xED && second > 0x9F))
        length = 3; // neither overlong nor half of a pair
    else if (first >= 0xF0 && first <= 0xF4 && !(first == 0xF0 && second < 0x90) && !(first == 0xF4 && second > 0x8F))
        length = 4;
    for (std::size_t k = 1; k < length; ++k)
        if ((Byte(text, position + k) & 0xC0) != 0x80)
            return 0;
    return length;
}

bool IsUtf8(std::string_view text)
{
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t length = Utf8Length(text, position);
        if (length == 0)
            return false;
        position += length;
    }
    return true;
}

void AppendUtf8(std::string& text, char32_t code)
{
    if (code < 0x80) {
        text += static_cast<char>(code);
    } else if (code < 0x800) {
        text += static_cast<char>(0xC0 | (code >> 6));
        text += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        text += static_cast<char>(0xE0 | (code >> 12));
        text += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (code & 0x3F));
    }
}

/// Messages repeat paths and texts of the file, which may be of any length.
constexpr std::size_t LongestMessage = 2000;

void JoinSpaces(std::string& text)
{
    const auto bothSpaces = [](char a, char b) { return a == ' ' && b == ' '; };
    text.erase(std::unique(text.begin(), text.end(), bothSpaces), text.end());
}

bool IsLetterOrDigit(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) != 0;
}

/// Length of a loader's name in front of a message, "OBJ: " or "Collada (1.4): "; 0 when there is none.
std::size_t LoaderNameLength(std::string_view text)
{
    if (text.empty() || std::isupper(static_cast<unsigned char>(text[0])) == 0)
        return 0;
    const auto isName = [](char c) { return IsLetterOrDigit(c) || c == '*' || c == '-'; };
    auto end = static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isName) - text.begin());
    if (text.substr(end).starts_with(" ("))
        end = std::min(text.find(')', end), text.size() - 1) + 1;
    return text.substr(end).starts_with(": ") ? end + 2 : 0;
}

/// Length of "the file:7 - " or "(line 7) " in front of a message; 0 when there is none.
std::size_t PlaceLength(std::string_view text)
{
    for (const auto& [begin, end] : {std::pair{"the file:", " - "}, std::pair{"(line ", ")"}}) {
        const std::string_view before(begin);
        if (!text.starts_with(before))
            continue;
        const auto number = std::min(text.find_first_not_of("0123456789", before.size()), text.size());
        const std::string_view after(end);
        if (number == before.size() || !text.substr(number).starts_with(after))
            continue;
        return std::min(text.find_first_not_of(' ', number + after.size()), text.size());
    }
    return 0;
}

/// Without full stops and the words that led to the file's name, "failed to open" rather than "failed to open for:".
std::string_view WithoutDanglingWords(std::string_view text)
{
    constexpr auto Dangling = std::to_array<std::string_view>(
        {"at", "by", "called", "for", "from", "in", "into", "named", "of", "on", "to", "with"});
    for (;;) {
        text = text.substr(0, text.find_last_not_of(" .!:,;-") + 1);
        const std::string_view last = text.substr(text.find_last_of(' ') + 1);
        if (last.empty() || std::ranges::find(Dangling, last) == Dangling.end())
            return text;
        text.remove_suffix(last.size());
    }
}

} // namespace

std::string Utf8From(std::string_view bytes)
{
    std::string text;
    if (IsUtf8(bytes)) {
        text = bytes;
    } else {
        for (const char c : bytes) {
            const auto code = static_cast<unsigned char>(c);
            AppendUtf8(text, code >= 0x80 && code < 0xA0 ? Windows1252.at(code - 0x80U) : code);
        }
    }
    for (char& c : text)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
            c = ' ';
    return text;
}

std::string Utf8From(const aiString& text)
{
    return Utf8From(std::string_view(text.C_Str(), text.length));
}

std::string ErrorTextFrom(std::string_view message, std::string_view file)
{
    if (message.find("No suitable reader found") != std::string_view::npos)
        return "the format of the file is not known";
    std::string text(message.substr(0, LongestMessage));
    // "while loading OBJ file /a/b.obj" keeps its sense without the name, "/a/b.obj:7 - ..." does not.
    for (const std::string& repeated : {" " + std::string(file), std::string(file)})
        for (auto found = text.find(repeated); !file.empty() && found != std::string::npos; found = text.find(repeated))
            text.replace(found, repeated.size(), repeated.starts_with(' ') ? "" : "the file");
    text = Utf8From(text);
    JoinSpaces(text);
    std::string_view core(text);
    core.remove_prefix(std::min(core.find_first_not_of(' '), core.size()));
    while (const std::size_t length = LoaderNameLength(core))
        core.remove_prefix(length);
    core.remove_prefix(PlaceLength(core));
    text = std::string(WithoutDanglingWords(core));
    if (text.empty())
        return "the file is damaged";
    // Not an abbreviation.
    if (text.size() > 1 && std::islower(static_cast<unsigned char>(text[1])) != 0)
        text.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(text.front())));
    return "the file is damaged: " + text;
}

} // namespace Orvel::Import
