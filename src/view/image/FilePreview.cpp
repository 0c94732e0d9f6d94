#include "view/image/FilePreview.h"

#include "base/streams/axis_units.h"
#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/samples/rising_heights.h"
#include "platform/files/Exceptions.h"
#include "platform/files/paths.h"
#include "view/Scale.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace vldv::view {

namespace {

constexpr std::uintmax_t maxBytes = 256u << 20; // more would take longer than a glance

/// A document that keeps the reason of a failure to itself.
class silent_document : public CStorageDoc {
public:
    std::string reason;

protected:
    void ReportSaveLoadException(const wchar_t*, const CException& failure, bool) override { reason = failure.what(); }
};

std::string length_text(const VLAxis& axis, unsigned length)
{
    const readable_number physical = read_well(axis.get_units(), std::fabs(axis.scale) * length);
    return base::general(std::round(physical.value * 1000.0) / 1000.0) + " " + physical.units;
}

/// "Height: 512 x 256, 3.2 um x 1.6 um, 2 sub-images"
std::string image_line(const CStorageDoc& document, unsigned image)
{
    const SPMDataStream& stream = document.getImage(image);
    std::string samples, lengths;
    for (unsigned i = 0; i < stream.get_dimensions_number(); ++i) {
        const SPMDataStream::dimension& along = stream.get_dimension(i);
        samples += (i ? " x " : "") + std::to_string(along.length);
        if (along.get_axes_number() != 0) lengths += (i ? " x " : ", ") + length_text(along.get_axis(0), along.length);
    }
    std::string line = *stream.get_description() ? stream.get_description() : stream.get_name();
    line += ": " + samples + lengths;
    const unsigned subs = stream.get_dimensions_number() ? document.getSubImagesNumber(image) : 0;
    if (subs > 1) line += base::formatted(", %u sub-images", subs);
    return line;
}

bool is_surface(const CStorageDoc& document, unsigned image)
{
    const SPMDataStream& stream = document.getImage(image);
    return stream.get_dimensions_number() == 2 && document.isImageOk(image) && stream.array_type() == SPM_ARRAY_INT16 &&
           stream.values.get_axes_number() != 0;
}

/// One sample of `pixels` for each pixel of the smaller picture: the nearest.
void shrink(file_preview& preview, const std::vector<std::uint32_t>& pixels, CSize from, int side)
{
    const double ratio = std::min(1.0, static_cast<double>(side) / std::max(from.cx, from.cy));
    const auto scaled = [ratio](int length) { return std::max(1, static_cast<int>(std::lround(length * ratio))); };
    preview.size = {scaled(from.cx), scaled(from.cy)};
    preview.pixels.reserve(static_cast<std::size_t>(preview.size.cx) * static_cast<std::size_t>(preview.size.cy));
    for (int y = 0; y < preview.size.cy; ++y) {
        // Row 0 of a surface is the lowest.
        const std::int64_t row = from.cy - 1 - (2 * std::int64_t{y} + 1) * from.cy / (2 * preview.size.cy);
        for (int x = 0; x < preview.size.cx; ++x) {
            const std::int64_t column = (2 * std::int64_t{x} + 1) * from.cx / (2 * preview.size.cx);
            preview.pixels.push_back(pixels[static_cast<std::size_t>(row * from.cx + column)]);
        }
    }
}

void draw_surface(file_preview& preview, CStorageDoc& document, unsigned image, int side)
{
    const SPMDataStream& stream = document.getImage(image);
    const CSize size{static_cast<int>(stream.get_dimension(0).length),
                     static_cast<int>(stream.get_dimension(1).length)};
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy));
    const document::rising_heights heights({static_cast<const short*>(document.getImageDataS(image, 0)), pixels.size()},
                                           stream.values.get_axis(0));
    CScale scale;
    scale.DrawImage(pixels.data(), heights.samples().data(), size.cx * static_cast<int>(sizeof(short)),
                    {size.cx, size.cy}, heights.axis(), false, false, nullptr, true, nullptr, nullptr);
    shrink(preview, pixels, size, side);
}

} // namespace

file_preview preview_file(const std::wstring& path, int side)
{
    file_preview preview;
    std::error_code error;
    const std::uintmax_t bytes = std::filesystem::file_size(platform::to_path(path), error);
    if (error) return preview;
    if (bytes > maxBytes) {
        preview.text = base::formatted("%.0f MB", static_cast<double>(bytes) / (1 << 20));
        return preview;
    }
    silent_document document;
    try {
        if (!document.OnOpenDocument(path.c_str())) {
            preview.text = document.reason;
            return preview;
        }
        bool isDrawn = false;
        for (unsigned image = 0; image < document.getImagesNumber(); ++image) {
            preview.text += image_line(document, image) + "\n";
            if (!isDrawn && is_surface(document, image)) draw_surface(preview, document, image, side);
            isDrawn = !preview.pixels.empty();
        }
    } catch (const std::exception& failure) {
        preview = {.size = {}, .pixels = {}, .text = failure.what()};
    }
    return preview;
}

} // namespace vldv::view
