#pragma once

#include "tool/pdf/Rectangle.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace Orvel::Pdf
{

/// A place for a model in a PDF file that is there already.
struct TemplatePlace
{
    std::filesystem::path file;
    std::optional<std::size_t> page; ///< counted from 1; nothing: the field's, else the first
    std::optional<Rectangle>
        rectangle;     ///< as seen on the page, see PageFrame; nothing: the field's, else all of the page
    std::string field; ///< full name of a form field in UTF-8, whose place the model takes
};

} // namespace Orvel::Pdf
