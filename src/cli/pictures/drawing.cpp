#include "cli/pictures/drawing.h"

#include "base/text.h"
#include "cli/pictures/painter.h"
#include "view/DIBImage.h"

namespace vldv::cli {

namespace {

constexpr CSize dotsAnInch{96, 96};

void draw_on(CDC& dc, const drawing& what)
{
    // A page has whole points, which may be a pixel more.
    dc.FillSolidRect(CRect(0, 0, what.size.cx + 1, what.size.cy + 1), what.background);
    what.draw(dc);
}

output::picture_bytes encode_pixels(output::picture_format format, const drawing& what)
{
    const std::unique_ptr<CDC> reference = make_memory_surface(dotsAnInch);
    VLDIBImage picture;
    picture.Init(reference.get());
    if (!picture.Create(what.size.cx, what.size.cy, false))
        return base::read_error{0, "there is no memory for a picture of this size"};
    draw_on(*picture.dc(), what);
    const auto stride = static_cast<std::ptrdiff_t>(picture.stride());
    return output::encode_picture(format, {picture.bits().data() + stride * (picture.height() - 1), picture.width(),
                                           picture.height(), -stride, picture.header().biBitCount / 8});
}

output::picture_bytes encode_lines(platform::vector_format format, const std::wstring& title, const drawing& what)
{
    const std::unique_ptr<IVectorPage> page = make_vector_page({format, what.size, title});
    draw_on(page->dc(), what);
    std::vector<std::byte> document = page->finish();
    if (document.empty()) return base::read_error{0, "the document could not be made"};
    return document;
}

} // namespace

std::optional<drawing_format> drawing_format_of(std::string_view fileName) noexcept
{
    const auto endsWith = [&](std::string_view ending) {
        return fileName.size() >= ending.size() &&
               base::equal_ignoring_case(fileName.substr(fileName.size() - ending.size()), ending);
    };
    if (endsWith(".pdf")) return platform::vector_format::pdf;
    if (endsWith(".svg")) return platform::vector_format::svg;
    if (const auto pixels = output::picture_format_of(fileName)) return *pixels;
    return {};
}

output::picture_bytes encode_drawing(drawing_format format, const std::wstring& title, const drawing& what)
{
    if (const auto* const lines = std::get_if<platform::vector_format>(&format))
        return encode_lines(*lines, title, what);
    return encode_pixels(std::get<output::picture_format>(format), what);
}

} // namespace vldv::cli
