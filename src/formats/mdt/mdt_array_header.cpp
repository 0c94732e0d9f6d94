#include "base/text.h"
#include "base/units.h"
#include "formats/mdt/mdt_array.h"
#include "formats/shared/header_text.h"
#include "formats/shared/text_units.h"

#include <algorithm>
#include <cmath>

// The description of an array frame: texts, then a record for every dimension and every measured value.

namespace vldv::formats {

namespace {

constexpr std::uint64_t maxHeaderBytes = 16u << 20;

/// The element type of a code, or void.
SPMVarArrayType element_type(int code) noexcept
{
    switch (code) {
    case -1:
        return SPM_ARRAY_INT8;
    case 1:
        return SPM_ARRAY_UINT8;
    case -2:
        return SPM_ARRAY_INT16;
    case 2:
        return SPM_ARRAY_UINT16;
    case -4:
        return SPM_ARRAY_INT32;
    case 4:
        return SPM_ARRAY_UINT32;
    case -8:
        return SPM_ARRAY_INT64;
    case 8:
        return SPM_ARRAY_UINT64;
    case -5892:
        return SPM_ARRAY_FLOAT32;
    case -13320:
        return SPM_ARRAY_FLOAT64;
    default:
        return SPM_ARRAY_VOID;
    }
}

/// Units of an SI code, for files whose unit text is empty.
const char* si_units(std::uint64_t code) noexcept
{
    switch (code) {
    case 0x101:
        return "m";
    case 0x100001:
        return "A";
    case 0xfffd010200:
        return "V";
    case 0x1000001:
        return "s";
    default:
        return "";
    }
}

std::string take_text(base::byte_reader& in, std::uint64_t length)
{
    const auto bytes = in.take(static_cast<std::size_t>(std::min<std::uint64_t>(length, in.remaining() + 1)));
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Reads a record and moves behind it. \return false when it does not lie in the frame
bool read_calibration(base::byte_reader& in, mdt_quantity& out)
{
    const std::size_t start = in.offset();
    const std::uint32_t total = in.u32(), structure = in.u32();
    if (in.failed() || total < 8 || total > in.remaining() + 8) return false;
    const std::size_t texts = in.offset() + structure;
    const std::uint32_t nameBytes = in.u32(), commentBytes = in.u32(), unitBytes = in.u32();
    const std::uint64_t siCode = in.u64();
    in.skip(8 + 8);
    out.bias = in.f64();
    out.scale = in.f64();
    const std::uint64_t first = in.u64(), last = in.u64();
    out.type = in.i32();
    if (last >= first && last - first < 0xFFFFFFFFu) out.count = last - first + 1;
    if (structure > total - 8) return false;
    in.seek(texts);
    out.name = clean_text(cp1251_to_utf8(take_text(in, nameBytes)));
    in.skip(commentBytes);
    out.units = normal_unit(clean_text(cp1251_to_utf8(take_text(in, unitBytes))));
    if (in.failed()) return false;
    if (out.units.empty()) out.units = si_units(siCode);
    in.seek(start + total);
    return !in.failed();
}

/// The text of the first element of this name, in whatever it stands; empty when there is none.
std::string find_element(const std::map<std::string, std::string>& strings, const std::string& name)
{
    for (const auto& [key, text] : strings)
        if (key == name || key.ends_with("." + name)) return text;
    return {};
}

/// "um/sec" as "µm/s".
std::string normal_quotient(const std::string& units)
{
    const std::size_t slash = units.find('/');
    if (slash == std::string::npos) return normal_unit(units);
    return normal_unit(units.substr(0, slash)) + "/" + normal_unit(units.substr(slash + 1));
}

/// What the comment of a scan says of its speed and direction, under the keys that all formats have.
void add_scan_strings(std::map<std::string, std::string>& strings)
{
    const std::string rate = find_element(strings, "scshRate"), direction = find_element(strings, "scshDirXY");
    const std::string units = normal_quotient(find_element(strings, "scshRateUnits"));
    const bool isFrequency = units_convertable(units.c_str(), "Hz") > 0;
    if (!rate.empty()) strings[isFrequency ? "\\Scan rate" : "\\Speed"] = units.empty() ? rate : rate + " " + units;
    if (!direction.empty()) strings["\\Scan direction"] = direction;
}

} // namespace

SPMVarArrayType mdt_quantity::element() const noexcept { return element_type(type); }

std::uint64_t mdt_described_array::cellBytes() const noexcept
{
    std::uint64_t bytes = 0;
    for (const mdt_quantity& value : measured) bytes += element_size(value.element());
    return bytes;
}

base::read_result<mdt_described_array> read_mdt_array_header(source& file, const mdt_frame& frame)
{
    const auto bytes = read_frame_bytes(file, frame, 0, maxHeaderBytes);
    const auto refuse = [&](const char* reason) { return base::read_error{frame.offset, reason}; };
    base::byte_reader in(bytes);
    mdt_described_array header;
    in.skip(frame.headerBytes);
    const std::uint32_t headBytes = in.u32();
    in.skip(4 + 32 + 4);
    const std::uint32_t nameBytes = in.u32(), commentBytes = in.u32();
    const std::uint64_t others = std::uint64_t{in.u32()} + in.u32() + in.u32(); // view, spec, source
    in.seek(frame.headerBytes + std::size_t{headBytes});
    if (in.failed()) return refuse("the header of the frame is cut short");
    header.title = clean_text(cp1251_to_utf8(take_text(in, nameBytes)));
    add_xml_strings(base::utf16_to_utf8(take_text(in, commentBytes), false), header.strings);
    add_scan_strings(header.strings);
    header.strings["\\Date"] = frame.date;
    in.skip(others);
    in.skip(4);
    const std::uint32_t structure = in.u32();
    const std::size_t start = in.offset();
    header.cells = in.u64();
    header.statedCellBytes = in.u32();
    const std::uint32_t dimensions = in.u32(), measured = in.u32();
    if (in.failed()) return refuse("the description of the array lies outside the frame");
    if (dimensions > 16 || measured > 16) return refuse("more than 16 dimensions or measured values");
    in.seek(start + structure);
    for (std::uint32_t i = 0; i < dimensions + measured; ++i) {
        mdt_quantity each;
        if (!read_calibration(in, each)) return refuse("a calibration record lies outside the frame");
        (i < dimensions ? header.dimensions : header.measured).push_back(std::move(each));
    }
    header.offset = frame.offset + in.offset();
    header.done = frame.done;
    return header;
}

} // namespace vldv::formats
