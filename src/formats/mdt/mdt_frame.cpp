#include "formats/mdt/mdt_frame.h"

#include "base/text.h"
#include "formats/shared/header_text.h"

#include <algorithm>
#include <cmath>

namespace vldv::formats {

namespace {

constexpr const char* micrometre = "\u00B5m";
constexpr const char* degree = "\u00B0";

struct unit_row {
    int code;
    const char* units;
};

constexpr unit_row unitRows[] = {{-10, "1/cm"},
                                 {-5, "m"},
                                 {-4, "cm"},
                                 {-3, "mm"},
                                 {-2, micrometre},
                                 {-1, "nm"},
                                 {1, "nA"},
                                 {2, "V"},
                                 {4, "kHz"},
                                 {5, degree},
                                 {6, "%"},
                                 {7, "\u00B0"
                                     "C"},
                                 {8, "V"},
                                 {9, "s"},
                                 {10, "ms"},
                                 {11, "\u00B5s"},
                                 {12, "ns"},
                                 {13, "counts"},
                                 {14, "px"},
                                 {20, "A"},
                                 {21, "mA"},
                                 {22, "\u00B5"
                                      "A"},
                                 {23, "nA"},
                                 {24, "pA"},
                                 {25, "V"},
                                 {26, "mV"},
                                 {27, "\u00B5V"},
                                 {28, "nV"},
                                 {29, "pV"},
                                 {30, "N"},
                                 {31, "mN"},
                                 {32, "\u00B5N"},
                                 {33, "nN"},
                                 {34, "pN"}};

constexpr std::uint64_t maxTextBytes = 16u << 20;

/// Length and bytes of a text; an empty one when it does not lie in the frame.
std::string take_text(source& file, const mdt_frame& frame, std::uint64_t& offset)
{
    const std::uint64_t end = frame.offset + frame.size;
    std::byte lengthBytes[4];
    if (offset > end || end - offset < sizeof lengthBytes || !file.read(offset, lengthBytes)) return {};
    const std::uint32_t length = base::byte_reader(lengthBytes).u32();
    offset += sizeof lengthBytes;
    if (length > end - offset || length > maxTextBytes) {
        offset = end;
        return {};
    }
    std::string text(length, '\0');
    if (!file.read(offset, std::as_writable_bytes(std::span(text)))) text.clear();
    offset += length;
    return text;
}

} // namespace

std::vector<std::byte> read_frame_bytes(source& file, const mdt_frame& frame, std::uint64_t from, std::uint64_t most)
{
    std::vector<std::byte> bytes;
    if (from > frame.size) return bytes;
    bytes.resize(static_cast<std::size_t>(std::min(most, frame.size - from)));
    if (!file.read(frame.offset + from, bytes)) bytes.clear();
    return bytes;
}

mdt_axis read_mdt_axis(base::byte_reader& in) noexcept
{
    mdt_axis axis;
    axis.offset = in.f32();
    axis.step = in.f32();
    const int code = in.i16();
    if (axis.step == 0.0) return {0.0, 1.0, "", false};
    const mdt_unit unit = mdt_unit_of(code);
    axis.offset *= unit.factor;
    axis.step *= unit.factor;
    axis.units = unit.units;
    return axis;
}

std::vector<std::string> notes_on_steps(std::initializer_list<std::pair<const char*, const mdt_axis*>> axes)
{
    std::vector<std::string> notes;
    for (const auto& [name, axis] : axes)
        if (!axis->isStated)
            notes.push_back(std::string("the step of the ") + name + " axis is 0: it counts without a unit");
    return notes;
}

mdt_unit mdt_unit_of(int code) noexcept
{
    if (code == 0) return {0.1, "nm"}; // Angstrom
    const auto row =
        std::find_if(std::begin(unitRows), std::end(unitRows), [&](const unit_row& each) { return each.code == code; });
    return {1.0, row == std::end(unitRows) ? "" : row->units};
}

mdt_texts read_mdt_texts(source& file, const mdt_frame& frame, std::uint64_t offset)
{
    mdt_texts texts;
    texts.title = clean_text(cp1251_to_utf8(take_text(file, frame, offset)));
    add_xml_strings(base::utf16_to_utf8(take_text(file, frame, offset), false), texts.strings);
    texts.strings["\\Date"] = frame.date;
    return texts;
}

mdt_title split_mdt_title(const std::string& title)
{
    const std::size_t colon = title.find(':');
    const std::size_t digits = title.find_first_not_of("0123456789");
    if (colon != std::string::npos && digits + 1 == colon && digits > 0 && colon + 1 < title.size()) {
        const std::string pass = title.substr(0, digits), channel = title.substr(colon + 1);
        if (title[digits] == 'F') return {channel, pass, scan_direction::forward};
        if (title[digits] == 'B') return {channel, pass, scan_direction::reverse};
    }
    return {title, "", scan_direction::unknown}; // a word at the end of a title that a person wrote says nothing
}

void name_plane(mdt_plane& plane, const std::string& title, const std::string& otherwise)
{
    const mdt_title parts = split_mdt_title(title);
    plane.plane.channel = parts.channel.empty() ? otherwise : parts.channel;
    plane.plane.pass = parts.pass;
    plane.plane.direction = parts.direction;
    if (!parts.pass.empty()) plane.strings["Pass"] = parts.pass;
}

} // namespace vldv::formats
