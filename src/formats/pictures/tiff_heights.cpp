#include "base/text.h"
#include "formats/pictures/dib.h"
#include "formats/pictures/tiff_pixels.h"
#include "formats/pictures/tiff_samples.h"
#include "formats/shared/heights.h"

namespace vldv::formats {

namespace {

constexpr unsigned keptBits = 16; ///< samples up to here become raw numbers as they are
constexpr double unsignedMiddle = 32768.0;

std::span<std::int16_t> raw_row(recorded_image& image, const tiff_page& page, std::uint32_t fromTop)
{
    auto* samples = static_cast<std::int16_t*>(image.stream.array_data());
    return {samples + std::size_t{page.height - 1 - fromTop} * page.width, page.width};
}

/// Raw numbers that are the samples, unsigned ones less half their range. Where 0 is white, brightness counts down.
std::string fill_raw(tiff_rows& rows, const tiff_page& page, unsigned sample, recorded_image& image)
{
    const bool isSigned = page.kind == sample_kind::integer;
    const std::uint32_t flip = page.photometric == PHOTOMETRIC_MINISWHITE && !isSigned ? (1u << page.bits) - 1 : 0;
    std::vector<std::uint32_t> samples(page.width);
    for (std::uint32_t y = 0; y < page.height; ++y) {
        const auto row = rows.row(y);
        if (row.empty()) return rows.reason();
        read_natural(row, layout_of(page, sample), samples);
        const auto target = raw_row(image, page, page.fromTop(y));
        for (std::size_t x = 0; x < target.size(); ++x)
            target[x] = static_cast<std::int16_t>(isSigned ? with_sign(samples[x], page.bits)
                                                           : static_cast<std::int32_t>(samples[x] ^ flip) - 32768);
    }
    return {};
}

/// All values with the bottom row first.
std::string fill_values(tiff_rows& rows, const tiff_page& page, unsigned sample, std::vector<double>& values)
{
    values.resize(std::size_t{page.width} * page.height);
    for (std::uint32_t y = 0; y < page.height; ++y) {
        const auto row = rows.row(y);
        if (row.empty()) return rows.reason();
        const std::size_t fromBottom = page.height - 1 - page.fromTop(y);
        read_values(row, layout_of(page, sample), page.kind,
                    std::span(values).subspan(fromBottom * page.width, page.width));
    }
    return {};
}

/// The page's own name, or what tells its channels apart.
std::string label_of(TIFF* tiff, const tiff_page& page, unsigned sample)
{
    const char* name = nullptr;
    std::string label = "Image";
    if (libtiff().getField(tiff, TIFFTAG_PAGENAME, &name) && name && *name) label = base::valid_utf8(name);
    const unsigned channels = page.samples - (page.alphaAt != 0 ? 1 : 0);
    return channels > 1 ? label + base::formatted(" channel %u", sample + 1) : label;
}

std::string append_channel(tiff_file& file, const tiff_page& page, unsigned sample, std::vector<std::string>& used,
                           recording& out)
{
    const std::string label = label_of(file.handle(), page, sample), id = unique_id(label, used);
    const image_frame frame{page.width, page.height, 1, resolution_axis(page.xResolution),
                            resolution_axis(page.yResolution)};
    value_scale scale;
    scale.origin = base::formatted("%u-bit samples", page.bits);
    tiff_rows rows(file, page, page.isSeparate ? sample : 0);
    if (page.kind == sample_kind::real || page.bits > keptBits) {
        std::vector<double> values;
        std::string reason = fill_values(rows, page, sample, values);
        if (!reason.empty()) return reason;
        out.items.emplace_back(make_image_from_values(id, label, frame, scale, values));
        return {};
    }
    if (page.kind == sample_kind::natural) scale.offset = unsignedMiddle;
    recorded_image image = make_image(id, label, frame, scale);
    std::string reason = fill_raw(rows, page, sample, image);
    if (reason.empty()) out.items.emplace_back(std::move(image));
    return reason;
}

} // namespace

bool holds_heights(const tiff_page& page) noexcept
{
    if (!page.isKnownKind || !(page.isGrey() || page.isRgb())) return false;
    switch (page.kind) {
    case sample_kind::real:
        return page.bits == 32 || page.bits == 64;
    case sample_kind::integer:
        return page.bits <= 32 || page.bits == 64;
    default:
        return (page.bits > 16 && (page.bits <= 32 || page.bits == 64)) || (page.bits > 8 && page.isGrey());
    }
}

std::string append_heights(tiff_file& file, const tiff_page& page, std::vector<std::string>& used, recording& out)
{
    if (!is_dib_size(page.width, page.height, 16)) return "ImageWidth and ImageLength: too many pixels";
    for (unsigned sample = 0; sample < page.samples; ++sample) {
        if (page.alphaAt != 0 && sample == page.alphaAt) continue;
        std::string reason = append_channel(file, page, sample, used, out);
        if (!reason.empty()) return reason;
    }
    return {};
}

} // namespace vldv::formats
