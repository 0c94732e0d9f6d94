#include "formats/nanoscope/nanoscope_image.h"

#include "base/text.h"
#include "base/units.h"
#include "formats/nanoscope/nanoscope_scale.h"
#include "formats/shared/stated_number.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace vldv::formats {

namespace {

constexpr std::uint64_t maxSide = 65536;

struct shape {
    std::uint64_t columns = 0, rows = 0;
    bool usable() const noexcept { return columns >= 1 && rows >= 1 && columns <= maxSide && rows <= maxSide; }
    std::uint64_t samples() const noexcept { return columns * rows; }
};

/// "512 512": NanoScope E writes the rows as second number. None when one of them is damaged.
std::vector<double> leading_numbers(const std::string* text, std::string* rest = nullptr)
{
    std::vector<double> numbers;
    if (!text) return numbers;
    std::string_view left = *text;
    for (double number = 0.0; take_number(left, number);) numbers.push_back(number);
    if (std::ranges::any_of(numbers, [](double each) { return std::isnan(each); })) numbers.clear();
    if (rest) *rest = base::trimmed(left);
    return numbers;
}

std::uint64_t count_or_zero(double number) noexcept
{
    const bool isCount = number >= 1.0 && number <= static_cast<double>(maxSide) && number == std::floor(number);
    return isCount ? static_cast<std::uint64_t>(number) : 0;
}

shape shape_of(const std::string* samplesPerLine, const std::string* lines, std::uint64_t otherRows)
{
    shape found;
    const auto numbers = leading_numbers(samplesPerLine);
    if (!numbers.empty()) found.columns = count_or_zero(numbers[0]);
    const auto rows = leading_numbers(lines);
    if (!rows.empty())
        found.rows = count_or_zero(rows[0]);
    else if (numbers.size() > 1)
        found.rows = count_or_zero(numbers[1]);
    else
        found.rows = otherRows;
    return found;
}

/// Shapes that the header offers, the likeliest first: the image's own, that of the scan, that of the valid data.
/// Some files of version 5 hold a wrong shape in the image list.
std::vector<shape> offered_shapes(const nanoscope_header& header, const nanoscope_section& image)
{
    const shape scan = shape_of(header.setting("samps/line"), header.setting("lines"), 0);
    const shape own = shape_of(image.find("samps/line"), image.find("number of lines"), scan.rows);
    const shape valid = shape_of(image.find("valid data len x"), image.find("valid data len y"), 0);
    std::vector<shape> usable;
    for (const shape& offer : {own, scan, valid})
        if (offer.usable()) usable.push_back(offer);
    return usable;
}

/// Chooses the shape and the bytes a sample that make up `length`, else the first shape that fits into it.
bool choose_shape(const std::vector<shape>& offers, std::uint64_t length, unsigned expectedBytes,
                  nanoscope_image& image)
{
    const auto take = [&](const shape& chosen, unsigned bytes) {
        image.width = static_cast<unsigned>(chosen.columns);
        image.height = static_cast<unsigned>(chosen.rows);
        image.sampleBytes = bytes;
        return true;
    };
    // Newer versions write either width: there the image's own shape decides before another one at the usual width
    // does.
    if (expectedBytes == 4 && offers.front().samples() * 2 == length) return take(offers.front(), 2);
    for (const unsigned bytes : {expectedBytes, 6u - expectedBytes})
        for (const shape& offer : offers)
            if (offer.samples() * bytes == length) return take(offer, bytes);
    for (const shape& offer : offers)
        if (offer.samples() * expectedBytes <= length) return take(offer, expectedBytes);
    return false;
}

/// "500 250 nm": one number means a square. Full extents, of fast and slow axis.
struct scan_size {
    double x = 0.0, y = 0.0;
    std::string xUnits, yUnits;
    bool hasBoth = false; ///< x and y stand in the header
    bool isStated = false;
    bool usable() const noexcept { return x > 0.0 && y > 0.0 && std::isfinite(x) && std::isfinite(y); }
};

scan_size parse_scan_size(const std::string* text)
{
    scan_size size;
    std::string units;
    const auto numbers = leading_numbers(text, &units);
    size.isStated = text && !base::trimmed(*text).empty();
    if (numbers.empty()) return size;
    size.x = numbers.front();
    size.hasBoth = numbers.size() > 1;
    size.y = size.hasBoth ? numbers[1] : numbers[0];
    size.xUnits = size.yUnits = nanoscope_units(units);
    return size;
}

/// The size that the scan list states; the slow axis may have a line of its own.
scan_size size_of_scan(const nanoscope_header& header)
{
    scan_size size = parse_scan_size(header.setting("scan size"));
    const scan_size slow = parse_scan_size(header.setting("slow axis size"));
    if (slow.usable()) {
        size.y = slow.x;
        size.yUnits = slow.xUnits;
    }
    return size;
}

/// True when both fast axes have the same length, but for the rounding in the header.
bool same_fast_axis(const scan_size& a, const scan_size& b)
{
    const double inUnitsOfB = convert_size(a.xUnits.c_str(), b.xUnits.c_str(), a.x);
    return std::fabs(inUnitsOfB - b.x) <= 0.01 * b.x;
}

/// Rows that the stated size belongs to. A frame that was stopped early, or runs on into the next, has other rows than
/// the scan's `Lines` and covers that part of the slow axis. One that was resampled in both directions covers it all.
double rows_of_size(const nanoscope_header& header, const nanoscope_image& image)
{
    const double lines = header.settingNumber("lines").value_or(image.height);
    const double samples = header.settingNumber("samps/line").value_or(image.width);
    const bool isResampled = image.width * lines == image.height * samples;
    return lines >= 1.0 && !isResampled ? lines : image.height;
}

/// True when the image says by itself that it is complete, whatever became of the scan's settings since: it has more
/// rows than those, both sizes and square pixels.
bool is_complete_alone(const nanoscope_header& header, const nanoscope_image& image, const scan_size& own)
{
    const std::string* aspect = image.section->find("aspect ratio");
    const bool isSquare = aspect && *aspect == "1:1" && own.usable() && own.hasBoth &&
                          std::fabs(own.x / image.width - own.y / image.height) <= 0.01 * own.x / image.width;
    return isSquare && image.height > header.settingNumber("lines").value_or(image.height);
}

/// The stated sizes are full extents, so a pixel is size / count. The image's own size goes before the scan's only
/// where they differ: then it is a crop made offline, and complete.
void set_axes(const nanoscope_header& header, nanoscope_image& image)
{
    const scan_size own = parse_scan_size(image.section->find("scan size"));
    const scan_size scan = size_of_scan(header);
    const bool hasSlowAxis = header.setting("slow axis size") != nullptr;
    const bool isCrop = own.usable() && scan.usable() && !same_fast_axis(own, scan);
    const bool takeScan = !own.usable() || (hasSlowAxis && scan.usable() && !isCrop);
    const scan_size& size = takeScan ? scan : own;
    if (!size.usable() && !own.isStated && !scan.isStated) return;
    if (!size.usable()) { // stated, and no size: such an image is refused
        image.x = image.y = stated_side(0.0, std::min(size.x, size.y), 1, "");
        return;
    }
    const bool isWhole = isCrop || (!takeScan && is_complete_alone(header, image, own));
    const double rows = isWhole ? image.height : rows_of_size(header, image);
    image.x = VLAxis(nanoscope_offset(header, *image.section, "x offset", size.xUnits), size.x / image.width,
                     size.xUnits.c_str());
    image.y =
        VLAxis(nanoscope_offset(header, *image.section, "y offset", size.yUnits), size.y / rows, size.yUnits.c_str());
}

} // namespace

nanoscope_image describe_nanoscope_image(const nanoscope_header& header, const nanoscope_section& section)
{
    nanoscope_image image;
    image.section = &section;
    image.channel = nanoscope_channel(section);
    if (const std::string* line = section.find("scan line")) image.pass = *line;
    if (const std::string* frame = section.find("frame direction")) image.pass += ", " + *frame;
    if (const std::string* direction = section.find("line direction")) {
        image.isTrace = base::equal_ignoring_case(*direction, "trace");
        image.isRetrace = base::equal_ignoring_case(*direction, "retrace");
    }
    image.scale = nanoscope_image_scale(header, section);
    image.volts = nanoscope_image_volts(header, section);
    return image;
}

std::string place_nanoscope_image(const nanoscope_header& header, std::uint64_t fileSize, nanoscope_image& image)
{
    const std::string* offsetText = image.section->find("data offset");
    const std::string* lengthText = image.section->find("data length");
    const auto offset = offsetText ? leading_count(*offsetText) : std::nullopt;
    const auto length = lengthText ? leading_count(*lengthText) : std::nullopt;
    if (!offset) return "Data offset is missing or no number";
    if (!length) return "Data length is missing or no number";
    if (*offset < header.length().value_or(0)) return "Data offset lies inside the header";
    if (*offset > fileSize || *length > fileSize - *offset)
        return "Data offset " + std::to_string(*offset) + " and Data length " + std::to_string(*length) +
               " reach beyond the end of the file, which is cut short";
    constexpr std::uint32_t firstWide = 0x09200000; // from 9.20 on samples take 4 bytes, whatever Bytes/pixel says
    const unsigned expected = header.version() >= firstWide ? 4 : 2;
    const auto offers = offered_shapes(header, *image.section);
    if (offers.empty()) return "Samps/line or Number of lines is missing, 0 or above 65536";
    if (!choose_shape(offers, *length, expected, image))
        return "Samps/line times Number of lines does not fit Data length " + std::to_string(*length);
    const std::uint64_t bytes = image.samples() * image.sampleBytes;
    if (bytes != *length)
        image.doubt = "Samps/line times Number of lines, " + std::to_string(image.width) + " x " +
                      std::to_string(image.height) + ", takes " + std::to_string(bytes) +
                      " bytes, Data length states " + std::to_string(*length);
    image.offset = *offset;
    set_axes(header, image);
    return {};
}

std::string shape_nanoscope_image(const nanoscope_header& header, nanoscope_image& image)
{
    const auto offers = offered_shapes(header, *image.section);
    if (offers.empty()) return "Samps/line or Number of lines is missing, 0 or above 65536";
    image.width = static_cast<unsigned>(offers.front().columns);
    image.height = static_cast<unsigned>(offers.front().rows);
    set_axes(header, image);
    return {};
}

bool are_two_directions(const nanoscope_image& a, const nanoscope_image& b)
{
    const bool opposite = (a.isTrace && b.isRetrace) || (a.isRetrace && b.isTrace);
    return opposite && a.channel == b.channel && a.pass == b.pass && a.width == b.width && a.height == b.height &&
           a.sampleBytes == b.sampleBytes && a.x == b.x && a.y == b.y && a.scale.step == b.scale.step &&
           a.scale.offset == b.scale.offset && a.scale.units == b.scale.units;
}

} // namespace vldv::formats
