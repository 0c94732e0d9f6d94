// The plain picture of a surface: a colour a sample, without anything around it.
#include "cli/results/plain_picture.h"

#include "cli/choice/image_part.h"
#include "cli/results/window_picture.h"
#include "document/samples/rising_heights.h"
#include "document/samples/unmeasured_samples.h"
#include "view/Scale.h"
#include "view/scale/render.h"
#include "view/scale/render_step.h"

namespace vldv::cli {

output::pixel_view plain_picture::view() const
{
    const std::ptrdiff_t stride = std::ptrdiff_t{width} * 4;
    return {pixels.data() + stride * (height - 1), width, height, -stride, 4};
}

namespace {

/// As a window draws them: in another size the samples are reduced, not their colours, and the range is that of all
/// that were measured.
void draw_heights(const std::int16_t* samples, CSize image, const VLAxis& axis,
                  std::span<const primitives::sample_run> unmeasured, const picture_options& options,
                  plain_picture& picture)
{
    const auto asked = parse_picture_size(options.size);
    const CSize size = asked ? CSize{asked->width, asked->height} : image;
    const CRect whole({0, 0}, image);
    const bool hasRegion = !options.roi.empty();
    const CRect part = hasRegion ? part_of_image("--roi", *parse_rectangle(options.roi), image) : whole;
    RECT region = view::shown_part(part, whole, size);
    view::window_fitter fitter;
    const view::fitted_window shown = fitter.fit(samples, image.cx, whole, size);
    const primitives::height_range range =
        hasRegion || !unmeasured.empty() ? view::range_keeper().of(samples, image.cx, part, unmeasured) : shown.range;
    picture.width = size.cx;
    picture.height = size.cy;
    picture.pixels.resize(static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy) * 4);
    CScale scale;
    set_up_scale(scale, options);
    scale.DrawImage({.bits = picture.pixels.data(),
                     .source = shown.samples,
                     .sourceStep = shown.step,
                     .size = {size.cx, size.cy},
                     .zAxis = &axis,
                     .absolute = options.absolute,
                     .highlight = options.highlight,
                     .roi = hasRegion ? &region : nullptr,
                     .rgb32 = true,
                     .range = &range});
}

} // namespace

std::string draw_plain(const CStorageDoc& document, const picture_number& which, const picture_options& options,
                       plain_picture& picture)
{
    SPMDataStream copy;
    const SPMDataStream* stream = &document.getImage(which.image);
    if (stream->array_type() != SPM_ARRAY_INT16) {
        copy = *stream;
        copy.convert_stream(SPM_ARRAY_INT16);
        stream = &copy;
    }
    if (stream->array_type() != SPM_ARRAY_INT16) return "its samples have no type";
    const unsigned columns = stream->get_dimension(0).length, rows = stream->get_dimension(1).length;
    constexpr unsigned maxSide = 32768;
    if (columns == 0 || rows == 0 || columns > maxSide || rows > maxSide) return "its size cannot be drawn";
    const auto* samples = static_cast<const short*>(stream->array_data()) + std::size_t{columns} * rows * which.sub;
    const document::rising_heights heights({samples, std::size_t{columns} * rows}, stream->values.get_axis(0));
    const CSize size{static_cast<int>(columns), static_cast<int>(rows)};
    const auto unmeasured = document::unmeasured_samples(document, which.image).of(which.sub);
    draw_heights(heights.samples().data(), size, heights.axis(), unmeasured, options, picture);
    return {};
}

drawing drawing_of(const plain_picture& picture)
{
    drawing made;
    made.size = {picture.width, picture.height};
    made.draw = [&picture](CDC& dc) {
        const CRect all(0, 0, picture.width, picture.height);
        const CBitmap bitmap{.header = {.biWidth = picture.width, .biHeight = picture.height, .biBitCount = 32},
                             .bits = const_cast<std::byte*>(picture.pixels.data())}; // which is only read
        dc.StretchDIBits(all, bitmap, all, SRCCOPY);
    };
    return made;
}

} // namespace vldv::cli
