#include "document/formats/jpk_image.h"

#include "base/text.h"
#include "document/formats/directions.h"
#include "document/formats/stream_shape.h"
#include "document/formats/text_units.h"
#include "document/formats/tiff_directory.h"

#include <algorithm>
#include <cmath>

namespace formats {

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
    slotUnitsTag = 0x80A2,
    slotKindTag = 0x80A3,
    slotFactorTag = 0x80A4,
    slotOffsetTag = 0x80A5,
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

/// One directory: a channel in one direction.
struct jpk_plane {
    channel_plane plane;
    std::vector<value_scale> others; ///< further calibrations
    SPMVarArrayType type = SPM_ARRAY_INT16;
    bool isTopFirst = false;
    std::uint32_t rowsPerStrip = 0;
    std::vector<double> offsets, counts;
    std::map<std::string, std::string> strings;
};

/// Calibrations of a channel, the one to show first; raw numbers when it has no scaling.
std::vector<value_scale> read_calibrations(const tiff_directory& directory)
{
    constexpr unsigned maxSlots = 100;
    const std::string shown = directory.text(defaultSlotTag);
    const double count = directory.number(slotsTag).value_or(0);
    std::vector<value_scale> scales{{1.0, 0.0, "", shown.empty() ? "no calibration slot" : "slot " + shown}};
    for (unsigned i = 0; i < maxSlots && i < count; ++i) {
        const unsigned base = i * slotStride;
        if (directory.text(slotKindTag + base) != "LinearScaling") continue;
        const std::string name = directory.text(slotNameTag + base);
        const double factor = directory.number(slotFactorTag + base).value_or(0);
        const double offset = directory.number(slotOffsetTag + base).value_or(0);
        if (!std::isfinite(factor) || factor == 0.0 || !std::isfinite(offset)) continue;
        const value_scale scale{factor, offset, normal_unit(directory.text(slotUnitsTag + base)), "slot " + name};
        if (name == shown)
            scales.front() = scale;
        else
            scales.push_back(scale);
    }
    return scales;
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

base::read_result<jpk_plane> describe_plane(std::uint64_t fileBytes, const tiff_directory& directory,
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
    result.others = read_calibrations(directory);
    result.plane.scale = result.others.front();
    result.others.erase(result.others.begin());
    if (!name.empty()) result.strings["Channel"] = name;
    return result;
}

/// Fills `out` with the rows of a plane, the bottom row first.
bool read_rows(source& file, const jpk_plane& plane, byte_order order, std::span<std::byte> out)
{
    const std::uint64_t rowBytes = std::uint64_t{plane.plane.frame.width} * element_size(plane.type);
    const std::uint64_t rows = plane.plane.frame.height;
    for (std::uint64_t row = 0; row < rows; row += plane.rowsPerStrip) {
        const auto strip = static_cast<std::size_t>(row / plane.rowsPerStrip);
        const std::uint64_t bytes = std::min<std::uint64_t>(plane.rowsPerStrip, rows - row) * rowBytes;
        const auto part = out.subspan(static_cast<std::size_t>(row * rowBytes), static_cast<std::size_t>(bytes));
        if (!file.read(static_cast<std::uint64_t>(plane.offsets[strip]), part)) return false;
    }
    to_native(out, element_size(plane.type), order);
    if (!plane.isTopFirst) return true;
    for (std::uint64_t low = 0, high = rows - 1; low < high; ++low, --high)
        std::swap_ranges(out.begin() + static_cast<std::ptrdiff_t>(low * rowBytes),
                         out.begin() + static_cast<std::ptrdiff_t>((low + 1) * rowBytes),
                         out.begin() + static_cast<std::ptrdiff_t>(high * rowBytes));
    return true;
}

std::map<std::string, std::string> document_texts(const tiff_directory& first)
{
    std::map<std::string, std::string> strings;
    for (const shown_text& each : shownTexts)
        if (std::string text = first.text(each.tag); !text.empty()) strings[each.key] = std::move(text);
    for (const shown_text& each : shownNumbers)
        if (const auto number = first.number(each.tag)) strings[each.key] = base::shortest(*number);
    return strings;
}

base::read_result<recorded_image> load_group(source& file, const std::vector<jpk_plane>& planes,
                                             const plane_group& group, byte_order order, const std::string& id)
{
    const jpk_plane& first = planes[group.front()];
    const image_frame& frame = first.plane.frame;
    const extent sides[] = {{frame.width, frame.x}, {frame.height, frame.y}};
    recorded_image image = make_samples(id, first.plane.channel, sides, static_cast<unsigned>(group.size()),
                                        first.plane.scale, first.type);
    const std::span all(static_cast<std::byte*>(image.stream.array_data()),
                        std::size_t{image.stream.array_length()} * element_size(first.type));
    const std::size_t planeBytes = all.size() / group.size();
    for (std::size_t i = 0; i < group.size(); ++i)
        if (!read_rows(file, planes[group[i]], order, all.subspan(i * planeBytes, planeBytes)))
            return base::read_error{0, "samples of " + first.plane.channel + " cannot be read"};
    for (const value_scale& other : first.others) add_calibration(image, first.plane.scale, other);
    settle_samples(image);
    name_directions(image, group, first.plane.direction);
    image.strings.insert(first.strings.begin(), first.strings.end());
    return image;
}

} // namespace

base::read_result<recording> read_jpk_image(source& file, std::vector<std::string>& ids)
{
    byte_order order = byte_order::little;
    const auto directories = read_tiff_directories(file, order);
    if (!directories) return directories.error();
    if (directories->empty() || !directories->front().has(xLengthTag))
        return base::read_error{0, "the grid's length (tag 0x8042) is missing: not an image of this instrument"};
    std::vector<jpk_plane> planes;
    std::uint64_t samplesLeft = file.size(); // directories may claim the same strips
    for (std::size_t i = 0; i < directories->size(); ++i) {
        const tiff_directory& directory = (*directories)[i];
        if (i == 0 && (directory.text(channelTag) == "thumbnail" || directory.number(bitsTag).value_or(8) == 8))
            continue;
        auto plane = describe_plane(file.size(), directory, directories->front());
        if (!plane) return base::read_error{0, "channel " + std::to_string(i) + ": " + plane.error().reason};
        const std::uint64_t samples = std::uint64_t{plane->plane.frame.width} * plane->plane.frame.height;
        if (samples > samplesLeft) return base::read_error{0, "the channels together exceed the file"};
        samplesLeft -= samples;
        planes.push_back(std::move(*plane));
    }
    if (planes.empty()) return base::read_error{0, "the file holds a thumbnail alone"};
    std::vector<channel_plane> keys;
    for (const jpk_plane& plane : planes) keys.push_back(plane.plane);
    recording result;
    result.strings = document_texts(directories->front());
    for (const plane_group& group : join_directions(keys)) {
        if (!file.progress(static_cast<double>(group.front()) / static_cast<double>(planes.size())))
            return base::read_error{0, "reading was cancelled"};
        auto image = load_group(file, planes, group, order, unique_id(planes[group.front()].plane.channel, ids));
        if (!image) return image.error();
        result.items.emplace_back(std::move(*image));
    }
    return result;
}

} // namespace formats
