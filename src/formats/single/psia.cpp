#include "formats/single/psia.h"

#include "base/text.h"
#include "formats/shared/header_text.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"
#include "formats/shared/text_units.h"
#include "formats/shared/tiff_directory.h"

#include <cmath>
#include <cstring>

namespace vldv::formats {

namespace {

enum psia_tag : unsigned { magicTag = 50432, versionTag, samplesTag, headerTag };
enum tiff_tag : unsigned { softwareTag = 305, dateTag = 306 };

constexpr std::uint32_t magic = 0x0E031301, firstVersion = 0x01000001, secondVersion = 0x01000002;
constexpr std::size_t firstHeaderBytes = 284, secondHeaderBytes = 352; ///< up to the last field of each version
constexpr const char* micrometre = "\u00B5m";

struct psia_header {
    std::uint32_t kind = 0;
    std::string channel, units;
    std::uint32_t columns = 0, rows = 0;
    double width = 0.0, height = 0.0, left = 0.0, bottom = 0.0; ///< micrometres
    double gain = 0.0, zScale = 0.0;
    const char* packing = nullptr; ///< how the samples are packed; null when they are not
    SPMVarArrayType type = SPM_ARRAY_INT16;
    std::map<std::string, std::string> strings;
};

/// Walks the fields of the header, each at a fixed place.
class field_reader {
public:
    explicit field_reader(std::span<const std::byte> bytes) : in(bytes) {}

    std::uint32_t u32(std::size_t at) { return atOffset(at).u32(); }
    double f64(std::size_t at) { return atOffset(at).f64(); }
    /// A text of at most `length` characters.
    std::string text(std::size_t at, std::size_t length)
    {
        const auto field = atOffset(at).take(2 * length);
        const std::string utf8 =
            base::utf16_to_utf8({reinterpret_cast<const char*>(field.data()), field.size()}, false);
        return clean_text(utf8.substr(0, utf8.find('\0')));
    }

private:
    base::byte_reader& atOffset(std::size_t at)
    {
        in.seek(at);
        return in;
    }

    base::byte_reader in;
};

/// The element type of a header of the second version, or void.
SPMVarArrayType type_of(std::uint32_t code) noexcept
{
    constexpr SPMVarArrayType types[] = {SPM_ARRAY_INT16, SPM_ARRAY_INT32, SPM_ARRAY_FLOAT32};
    return code < std::size(types) ? types[code] : SPM_ARRAY_VOID;
}

void add_strings(field_reader& in, std::map<std::string, std::string>& strings)
{
    const auto text = [&](const char* key, const std::string& value) {
        if (!value.empty()) strings[key] = value;
    };
    const auto number = [&](const char* key, std::size_t at, const std::string& units = {}) {
        const double value = in.f64(at);
        if (std::isfinite(value)) text(key, base::shortest(value) + (units.empty() ? "" : " " + units));
    };
    const auto yesNo = [&](const char* key, std::size_t at) { text(key, in.u32(at) != 0 ? "yes" : "no"); };
    text("Head mode", in.text(68, 8));
    number("Low-pass filter strength", 84);
    yesNo("Auto flatten", 92);
    yesNo("AC track", 96);
    number("Scan angle", 108, "\u00B0");
    yesNo("Sine scan", 116);
    number("Overscan rate", 120);
    text("\\Line direction", in.u32(128) != 0 ? "Forward" : "Reverse");
    text("\\Frame direction", in.u32(132) != 0 ? "Up" : "Down");
    yesNo("X and Y swapped", 136);
    number("\\Scan rate", 172, "Hz");
    number("Set point", 180, normal_unit(in.text(188, 8)));
    number("Tip bias", 204, "V");
    number("Sample bias", 212, "V");
    number("Z offset", 236);
}

void add_second_strings(field_reader& in, std::map<std::string, std::string>& strings)
{
    const auto number = [&](const char* key, std::size_t at) {
        const double value = in.f64(at);
        if (std::isfinite(value)) strings[key] = base::shortest(value);
    };
    number("Z servo gain", 284);
    number("Z scanner range", 292);
    constexpr std::pair<const char*, std::size_t> modes[] = {
        {"XY voltage mode", 300}, {"Z voltage mode", 316}, {"XY servo mode", 332}};
    for (const auto& [key, at] : modes)
        if (const std::string mode = in.text(at, 8); !mode.empty()) strings[key] = mode;
}

psia_header parse_header(std::span<const std::byte> bytes, bool isSecond)
{
    field_reader in(bytes);
    psia_header header;
    header.kind = in.u32(0);
    header.channel = in.text(4, 32);
    header.columns = in.u32(100);
    header.rows = in.u32(104);
    header.width = in.f64(140);
    header.height = in.f64(148);
    header.left = in.f64(156);
    header.bottom = in.f64(164);
    header.gain = in.f64(220);
    header.zScale = in.f64(228);
    header.units = normal_unit(in.text(244, 8));
    constexpr std::pair<const char*, std::size_t> packings[] = {
        {"compressed", 272}, {"logarithmic", 276}, {"square-root", 280}};
    for (const auto& [name, at] : packings)
        if (in.u32(at) != 0 && !header.packing) header.packing = name;
    add_strings(in, header.strings);
    if (!isSecond) return header;
    add_second_strings(in, header.strings);
    header.type = type_of(in.u32(348));
    return header;
}

/// Why the header says that there is nothing to show, or empty.
std::string header_problem(const psia_header& header, std::size_t sampleBytes)
{
    if (header.kind == 1) return "line profiles cannot be opened";
    if (header.kind == 2) return "spectroscopy cannot be opened";
    if (header.kind != 0) return "kind " + std::to_string(header.kind) + " of the header is not known";
    if (!is_image_side(header.columns) || !is_image_side(header.rows)) return "width or height is 0 or above 65536";
    if (header.packing) return std::string(header.packing) + " samples cannot be opened";
    if (header.type == SPM_ARRAY_VOID) return "the sample type of the header is not known";
    const std::uint64_t needed = std::uint64_t{header.columns} * header.rows * element_size(header.type);
    if (needed != sampleBytes)
        return "width times height ask for " + std::to_string(needed) + " bytes of samples, tag 50434 has " +
               std::to_string(sampleBytes);
    return {};
}

recorded_image make_heights(const psia_header& header, std::span<const std::byte> samples)
{
    const std::string label = header.channel.empty() ? "Image" : header.channel;
    std::vector<std::string> ids;
    const extent sides[] = {{header.columns, stated_side(header.left, header.width, header.columns, micrometre)},
                            {header.rows, stated_side(header.bottom, header.height, header.rows, micrometre)}};
    const double zScale = header.zScale == 0.0 ? 1.0 : header.zScale; // not stated
    recorded_image image = make_samples(unique_id(label, ids), label, sides, 1,
                                        {header.gain * zScale, 0.0, header.units, "data gain, Z scale"}, header.type);
    std::memcpy(image.stream.array_data(), samples.data(), samples.size()); // the bottom row first
    to_native({static_cast<std::byte*>(image.stream.array_data()), samples.size()}, element_size(header.type),
              byte_order::little);
    note_length(image, "the width in the header", header.width);
    note_length(image, "the height in the header", header.height);
    settle_samples(image);
    image.strings.insert(header.strings.begin(), header.strings.end());
    return image;
}

} // namespace

bool is_psia(source& file) { return first_tiff_value(file, magicTag) == magic; }

bool sniff_psia(std::span<const std::byte> head)
{
    memory_source start(head);
    return is_psia(start);
}

base::read_result<recording> read_psia(source& file)
{
    byte_order order = byte_order::little;
    left_out missing; // the heights stand in the first directory
    const auto directories = read_tiff_directories(file, order, missing);
    if (!directories) return directories.error();
    const auto refuse = [](const std::string& reason) { return base::read_error{0, reason}; };
    if (directories->empty() || directories->front().number(magicTag) != magic)
        return refuse("tag 50432 does not name calibrated data");
    const tiff_directory& tags = directories->front();
    const auto version = tags.number(versionTag);
    if (version != firstVersion && version != secondVersion)
        return refuse("the version of the header (tag 50433) is missing or not known");
    const bool isSecond = version == secondVersion;
    const auto headerBytes = tags.bytes(headerTag);
    if (headerBytes.size() < (isSecond ? secondHeaderBytes : firstHeaderBytes))
        return refuse("the header (tag 50435) is missing or cut short");
    const psia_header header = parse_header(headerBytes, isSecond);
    if (std::string problem = header_problem(header, tags.bytes(samplesTag).size()); !problem.empty())
        return refuse(problem);
    recording result;
    result.items.emplace_back(make_heights(header, tags.bytes(samplesTag)));
    if (std::string date = tags.text(dateTag); !date.empty()) result.strings["\\Date"] = std::move(date);
    if (std::string software = tags.text(softwareTag); !software.empty())
        result.strings["Software"] = std::move(software);
    return result;
}

} // namespace vldv::formats
