#pragma once
#include "output/picture_writer.h"
#include "platform/draw/drawing.h"
#include "platform/draw/vector_page.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

class CDC;

namespace vldv::cli {

/// What draws a picture of a size, as often as it is asked to.
struct drawing {
    CSize size; ///< pixels
    colorEntry background = 0xFFFFFF;
    std::function<void(CDC&)> draw;
};

/// Takes a drawing while what it draws from is there.
using drawing_user = std::function<void(const drawing&)>;

/// Pixels, or lines, shapes and text.
using drawing_format = std::variant<output::picture_format, platform::vector_format>;
/// The endings of `drawing_format_of`, for people.
constexpr const char* drawingEndings = "png, bmp, jpg, tif, pdf, svg";
/// The format that the extension of a file name asks for, in any case of letters.
std::optional<drawing_format> drawing_format_of(std::string_view fileName) noexcept;

/// The file of a drawing, or why there is none. \param title  of documents of lines
output::picture_bytes encode_drawing(drawing_format format, const std::wstring& title, const drawing& what);

} // namespace vldv::cli
