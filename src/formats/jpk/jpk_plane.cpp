#include "formats/jpk/jpk_plane.h"

#include "base/text.h"
#include "formats/jpk/jpk_channel.h"
#include "formats/jpk/jpk_image.h"
#include "formats/shared/stream_shape.h"
#include "formats/shared/text_units.h"

#include <algorithm>
#include <cmath>

namespace vldv::formats {

namespace {

enum tag : unsigned {
    columnsTag = 256,
    rowsTag = 257,
    bitsTag = 258,
    compressionTag = 259,
    stripOffsetsTag = 273,
    samplesTag = 277,
    rowsPerStripTag = 278,
    stripBytesTag = 279,
    sampleFormatTag = 339,
    x0Tag = 0x8040,
    y0Tag = 0x8041,
    xLengthTag = jpkGridTag,
    yLengthTag = 0x8043,
    reflectTag = 0x8045,
    channelTag = 0x8050,
    retraceTag = 0x8051,
    displayTag = 0x8052,
    slotsTag = 0x8080,
    defaultSlotTag = 0x8081,
    slotNameTag = 0x8090,
    slotEncoderTag = 0x80A1,
    slotUnitsTag = 0x80A2,
    slotKindTag = 0x80A3,
    slotFactorTag = 0x80A4,
    slotOffsetTag = 0x80A5,
    slotMarkerTag = 0x80AA,
    slotStride = 0x30,
};

struct shown_text {
    unsigned tag;
    const char* key;
};
constexpr shown_text shownTexts[] = {{0x8002, "Program"},    {0x8003, "\\Date"}, {0x8004, "Name"},
                                     {0x8005, "Comment"},    {0x8007, "Sample"}, {0x8030, "Feedback mode"},
                                     {0x804B, "Scan motion"}};
constexpr shown_text shownNumbers[] = {{0x8011, "Spring constant"}, {0x8031, "I gain"},   {0x8032, "P gain"},
                                       {0x8033, "Setpoint"},        {0x8044, "Rotation"}, {0x8049, "\\Scan rate"}};

constexpr unsigned maxSlots = 100;

/// Calibrations of a channel, the one to show first, usable or not; raw numbers when it has no scaling.
std::vector<value_scale> read_calibrations(const tiff_directory& directory)
{
    const std::string shown = directory.text(defaultSlotTag);
    const double count = directory.number(slotsTag).value_or(0);
    std::vector<value_scale> scales{{1.0, 0.0, "", shown.empty() ? "no calibration slot" : "slot " + shown}};
    for (unsigned i = 0; i < maxSlots && i < count; ++i) {
        const unsigned base = i * slotStride;
        if (directory.text(slotKindTag + base) != "LinearScaling") continue;
        const std::string name = directory.text(slotNameTag + base);
        const double factor = directory.number(slotFactorTag + base).value_or(0);
        const double offset = directory.number(slotOffsetTag + base).value_or(0);
        const value_scale scale{factor, offset, normal_unit(directory.text(slotUnitsTag + base)), "slot " + name};
        if (name == shown)
            scales.front() = scale;
        else if (is_usable(scale))
            scales.push_back(scale);
    }
    return scales;
}

/// The raw number of points that were not measured, where the encoder of a slot says that there is one.
std::optional<double> unmeasured_number(const tiff_directory& directory)
{
    const double count = directory.number(slotsTag).value_or(0);
    for (unsigned i = 0; i < maxSlots && i < count; ++i) {
        const unsigned base = i * slotStride;
        if (!directory.text(slotEncoderTag + base).ends_with("WithValidity")) continue;
        if (const auto number = directory.number(slotMarkerTag + base)) return number;
    }
    return std::nullopt;
}

/// The element type of the samples, or void.
SPMVarArrayType sample_type(const tiff_directory& directory)
{
    const double bits = directory.number(bitsTag).value_or(0), format = directory.number(sampleFormatTag).value_or(1);
    if (bits == 16) return format == 2 ? SPM_ARRAY_INT16 : format == 1 ? SPM_ARRAY_UINT16 : SPM_ARRAY_VOID;
    if (bits != 32) return SPM_ARRAY_VOID;
    return format == 1   ? SPM_ARRAY_UINT32
           : format == 2 ? SPM_ARRAY_INT32
           : format == 3 ? SPM_ARRAY_FLOAT32
                         : SPM_ARRAY_VOID;
}

unsigned side(const tiff_directory& directory, unsigned tag)
{
    const double length = directory.number(tag).value_or(0);
    return length >= 1.0 && length <= 65536.0 ? static_cast<unsigned>(length) : 0;
}

/// Why the strips cannot hold the rows, or empty.
std::string check_strips(std::uint64_t fileBytes, const jpk_plane& plane)
{
    const std::uint64_t rowBytes = std::uint64_t{plane.plane.frame.width} * element_size(plane.type);
    const std::uint64_t rows = plane.plane.frame.height;
    const std::uint64_t strips = (rows + plane.rowsPerStrip - 1) / plane.rowsPerStrip;
    if (plane.offsets.size() < strips || plane.counts.size() < strips) return "too few strips for the rows";
    for (std::uint64_t i = 0; i < strips; ++i) {
        const std::uint64_t needed =
            std::min<std::uint64_t>(plane.rowsPerStrip, rows - i * plane.rowsPerStrip) * rowBytes;
        const double offset = plane.offsets[i], count = plane.counts[i];
        if (!(offset >= 0) || !(count >= static_cast<double>(needed)) ||
            !holds_numbers(fileBytes, static_cast<std::uint64_t>(offset), needed, 1))
            return "a strip lies outside the file or is too short";
    }
    return {};
}

} // namespace

std::string jpk_channel_name(const tiff_directory& directory) { return directory.text(channelTag); }

bool is_jpk_thumbnail(const tiff_directory& directory)
{
    return directory.text(channelTag) == "thumbnail" || directory.number(bitsTag).value_or(8) == 8;
}

base::read_result<jpk_plane> describe_jpk_plane(std::uint64_t fileBytes, const tiff_directory& directory,
                                                const tiff_directory& first)
{
    const auto refuse = [](const std::string& reason) { return base::read_error{0, reason}; };
    jpk_plane result;
    image_frame& frame = result.plane.frame;
    frame.width = side(directory, columnsTag);
    frame.height = side(directory, rowsTag);
    if (frame.width == 0 || frame.height == 0) return refuse("ImageWidth or ImageLength is 0 or above 65536");
    result.type = sample_type(directory);
    if (result.type == SPM_ARRAY_VOID) return refuse("BitsPerSample is neither 16 nor 32");
    if (directory.number(compressionTag).value_or(1) != 1) return refuse("Compression is not supported");
    if (directory.number(samplesTag).value_or(1) != 1) return refuse("SamplesPerPixel is not 1");
    result.rowsPerStrip = side(directory, rowsPerStripTag);
    if (result.rowsPerStrip == 0) result.rowsPerStrip = frame.height;
    result.offsets = directory.numbers(stripOffsetsTag);
    result.counts = directory.numbers(stripBytesTag);
    if (std::string problem = check_strips(fileBytes, result); !problem.empty()) return refuse(problem);
    if (directory.number(slotsTag).value_or(0) > maxSlots) return refuse("more than 100 calibration slots");

    // The grid stands in the first directory, as a rule also in every other.
    const tiff_directory& grid = directory.has(xLengthTag) ? directory : first;
    const double x = grid.number(xLengthTag).value_or(0), y = grid.number(yLengthTag).value_or(0);
    if (!(x > 0) || !(y > 0)) return refuse("the grid's length is missing or not above 0");
    frame.x = VLAxis(grid.number(x0Tag).value_or(0), x / frame.width, "m");
    frame.y = VLAxis(grid.number(y0Tag).value_or(0), y / frame.height, "m");
    result.isTopFirst = grid.number(reflectTag).value_or(0) != 0;

    const std::string name = directory.text(channelTag), display = directory.text(displayTag);
    result.plane.channel = !display.empty() ? display : !name.empty() ? name : "Image";
    result.plane.direction =
        directory.number(retraceTag).value_or(0) != 0 ? scan_direction::reverse : scan_direction::forward;
    result.plane.pass = name + ", " + std::to_string(result.type);
    result.unmeasured = unmeasured_number(directory);
    result.others = read_calibrations(directory);
    result.plane.scale = result.others.front();
    result.others.erase(result.others.begin());
    if (!is_usable(result.plane.scale))
        return refuse("the multiplier or offset of " + result.plane.scale.origin + " is no number, infinite or 0");
    if (!name.empty()) result.strings["Channel"] = name;
    return result;
}

std::map<std::string, std::string> jpk_document_texts(const tiff_directory& first)
{
    std::map<std::string, std::string> strings;
    const auto addNumber = [&](const shown_text& each) {
        if (const auto number = first.number(each.tag)) strings[each.key] = base::shortest(*number);
    };
    for (const shown_text& each : shownTexts) {
        std::string text = first.text(each.tag);
        if (text.empty())
            addNumber(each); // the program is a text or a number
        else
            strings[each.key] = std::move(text);
    }
    for (const shown_text& each : shownNumbers) addNumber(each);
    return strings;
}

} // namespace vldv::formats
