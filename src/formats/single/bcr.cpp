#include "formats/single/bcr.h"

#include "base/text.h"
#include "formats/shared/header_text.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stated_number.h"
#include "formats/shared/stream_shape.h"
#include "formats/shared/text_units.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <optional>

namespace vldv::formats {

namespace {

constexpr std::uint64_t headerCharacters = 2048;

/// "fileformat = bcrf_unicode": what the first line says.
struct bcr_kind {
    bool isFloat = false, isWide = false;
};

/// Leaves out the bytes between the characters of UTF-16.
std::string narrowed(std::string_view text)
{
    std::string out;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2) out += text[i + 1] == 0 ? text[i] : '?';
    return out;
}

std::string_view without_order_mark(std::string_view text)
{
    if (text.starts_with("\xFF\xFE")) text.remove_prefix(2);
    return text;
}

std::optional<bcr_kind> kind_of(std::string_view head)
{
    head = without_order_mark(head);
    const bool isWide = head.size() > 1 && head[1] == 0;
    const std::string text = isWide ? narrowed(head.substr(0, 200)) : std::string(head.substr(0, 100));
    const std::string_view line = std::string_view(text).substr(0, text.find_first_of("\r\n"));
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || base::trimmed(line.substr(0, equals)) != "fileformat") return std::nullopt;
    const std::string_view name = base::trimmed(line.substr(equals + 1));
    if (name == "bcrstm" && !isWide) return bcr_kind{false, false};
    if (name == "bcrf" && !isWide) return bcr_kind{true, false};
    if (name == "bcrstm_unicode" && isWide) return bcr_kind{false, true};
    if (name == "bcrf_unicode" && isWide) return bcr_kind{true, true};
    return std::nullopt;
}

class bcr_header {
public:
    /// Zero bytes pad the text as blanks do; lines go on behind them.
    explicit bcr_header(std::string utf8)
    {
        std::ranges::replace(utf8, '\0', ' ');
        for (const std::string_view each : base::split(utf8, '\n')) {
            const std::string line = clean_text(each);
            const std::size_t equals = line.find('=');
            if (line.starts_with('%') || line.starts_with('#') || equals == std::string::npos) continue;
            lines.emplace(base::lower_ascii(base::trimmed(std::string_view(line).substr(0, equals))),
                          base::trimmed(std::string_view(line).substr(equals + 1)));
        }
    }
    std::string text(const std::string& key, const std::string& otherwise = {}) const
    {
        const auto found = lines.find(key);
        return found == lines.end() || found->second.empty() ? otherwise : found->second;
    }
    /// What a key states, NaN for a text that is no number; `otherwise` when it states nothing.
    double number(const std::string& key, double otherwise) const
    {
        const std::string stated = text(key);
        return stated.empty() ? otherwise : stated_number(stated).value_or(std::nan(""));
    }
    const std::map<std::string, std::string>& all() const noexcept { return lines; }

private:
    std::map<std::string, std::string> lines;
};

struct bcr_layout {
    bcr_kind kind;
    bcr_header header;
    std::uint64_t dataAt = 0;
};

base::read_result<bcr_layout> read_header(source& file)
{
    std::string head(static_cast<std::size_t>(std::min<std::uint64_t>(file.size(), 2 * headerCharacters)), '\0');
    if (!file.read(0, std::as_writable_bytes(std::span(head)))) return base::read_error{0, "header cannot be read"};
    const auto kind = kind_of(head);
    if (!kind) return base::read_error{0, "not a BCR header"};
    const std::uint64_t characterBytes = kind->isWide ? 2 : 1;
    const auto decode = [&](std::string_view bytes) {
        return bcr_header(kind->isWide ? base::utf16_to_utf8(without_order_mark(bytes), false)
                                       : base::latin1_to_utf8(bytes));
    };
    bcr_layout layout{*kind, decode(std::string_view(head).substr(0, headerCharacters * characterBytes)),
                      headerCharacters * characterBytes};
    const double stated = layout.header.number("headersize", static_cast<double>(headerCharacters));
    if (!(stated >= 1 && stated <= 1 << 24))
        return base::read_error{0, "headersize is no number, not above 0 or too large"};
    layout.dataAt = static_cast<std::uint64_t>(stated) * characterBytes;
    if (layout.dataAt > file.size())
        return base::read_error{file.size(), "headersize reaches beyond the end of the file"};
    std::string whole(static_cast<std::size_t>(layout.dataAt), '\0');
    if (!file.read(0, std::as_writable_bytes(std::span(whole)))) return base::read_error{0, "header cannot be read"};
    layout.header = decode(whole);
    return layout;
}

VLAxis lateral(const bcr_header& header, const char* length, const char* offset, const char* units, unsigned count)
{
    if (header.text(length).empty()) return {};
    return stated_side(header.number(offset, 0.0), header.number(length, 0.0), count,
                       normal_unit(header.text(units, "nm")));
}

template <class T>
void turn_upside_down(recorded_image& image, unsigned width)
{
    const auto samples = elements_of<T>(image);
    for (std::size_t low = 0, high = samples.size() - width; low < high; low += width, high -= width)
        std::swap_ranges(samples.begin() + static_cast<std::ptrdiff_t>(low),
                         samples.begin() + static_cast<std::ptrdiff_t>(low + width),
                         samples.begin() + static_cast<std::ptrdiff_t>(high));
}

/// What heights have to be moved by for the lowest one to lie at a zmin above 0; 0 when it does to within half a step.
double way_to_zmin(double zmin, double lowest, double step)
{
    return zmin > 0 && std::fabs(zmin - lowest) > 0.5 * step ? zmin - lowest : 0.0;
}

void note_move(recorded_image& image, value_scale scale, double way, double zmin)
{
    scale.offset += way;
    scale.origin += ", lowest point moved to zmin = " + base::shortest(zmin);
    image.strings["\\Z scale"] = describe_scale(scale);
}

/// Whole numbers stay as they are and their axis moves.
void move_axis(recorded_image& image, const value_scale& scale, double zmin)
{
    const auto raw = elements_of<std::int16_t>(image);
    VLAxis axis = image.stream.values.get_axis(0);
    const double lowest =
        axis.at(axis.scale > 0 ? *std::min_element(raw.begin(), raw.end()) : *std::max_element(raw.begin(), raw.end()));
    const double way = way_to_zmin(zmin, lowest, std::fabs(axis.scale));
    if (way == 0.0) return;
    axis.start += way;
    image.stream.values.set_axis(0, axis);
    note_move(image, scale, way, zmin);
}

/// Moves the numbers before they are fitted onto an axis, in double precision: zmin may be far above their span.
void move_numbers(recorded_image& image, const value_scale& scale, double zmin)
{
    constexpr double steps = 65535.0; // of the axis that they will be fitted onto
    float lowest = std::numeric_limits<float>::infinity(), highest = -lowest;
    for (const float value : elements_of<float>(image)) { // comparisons with NaN are false
        if (value < lowest) lowest = value;
        if (value > highest) highest = value;
    }
    const double way = lowest <= highest ? way_to_zmin(zmin, lowest, (double{highest} - lowest) / steps) : 0.0;
    if (way == 0.0 || !std::isfinite(way)) return;
    image.stream.convert_stream(SPM_ARRAY_FLOAT64);
    for (double& value : elements_of<double>(image)) value += way;
    note_move(image, scale, way, zmin);
}

/// Speeds are in nm/s; a text that says more than a number is left alone.
std::string with_speed_units(const std::string& speed) { return lone_number(speed) ? speed + " nm/s" : speed; }

} // namespace

bool sniff_bcr(std::span<const std::byte> head)
{
    return kind_of({reinterpret_cast<const char*>(head.data()), head.size()}).has_value();
}

base::read_result<recording> read_bcr(source& file)
{
    const auto layout = read_header(file);
    if (!layout) return layout.error();
    const bcr_header& header = layout->header;
    const auto refuse = [&](const char* reason) { return base::read_error{layout->dataAt, reason}; };
    if (header.number("forcecurve", 0) == 1)
        return refuse("force curves of this format (forcecurve = 1) are not known");
    const double columns = header.number("xpixels", 0), rows = header.number("ypixels", 0);
    const auto isSide = [](double count) { return count >= 1 && count <= 65536 && count == std::floor(count); };
    if (!isSide(columns) || !isSide(rows))
        return refuse("xpixels or ypixels is missing, no whole number, 0 or above 65536");
    const auto width = static_cast<unsigned>(columns), height = static_cast<unsigned>(rows);
    const SPMVarArrayType type = layout->kind.isFloat ? SPM_ARRAY_FLOAT32 : SPM_ARRAY_INT16;
    if (!holds_numbers(file.size(), layout->dataAt, std::uint64_t{width} * height, element_size(type)))
        return refuse("xpixels times ypixels asks for more samples than the file holds");

    const std::string units = normal_unit(header.text("zunit", "nm"));
    const double zmin = header.number("zmin", 0.0);
    if (!std::isfinite(zmin)) return refuse("zmin is no number or infinite");
    const double bit2nm = header.number("bit2nm", 1.0);
    const value_scale scale =
        layout->kind.isFloat ? value_scale{1.0, 0.0, units, "zunit"} : value_scale{bit2nm, 0.0, units, "bit2nm, zunit"};
    const extent sides[] = {{width, lateral(header, "xlength", "xoffset", "xunit", width)},
                            {height, lateral(header, "ylength", "yoffset", "yunit", height)}};
    recorded_image image = make_samples("Topography", "Topography", sides, 1, scale, type);
    for (const char* length : {"xlength", "ylength"})
        if (!header.text(length).empty()) note_length(image, length, header.number(length, 0.0), header.text(length));
    const std::uint64_t behind = file.size() - layout->dataAt - std::uint64_t{width} * height * element_size(type);
    if (behind != 0)
        image.notes.push_back(std::to_string(behind) + " bytes behind xpixels times ypixels samples are not read");
    const std::span bytes(static_cast<std::byte*>(image.stream.array_data()),
                          std::size_t{image.stream.array_length()} * element_size(type));
    if (!file.read(layout->dataAt, bytes)) return refuse("samples cannot be read");
    to_native(bytes, element_size(type), header.number("intelmode", 1) == 0 ? byte_order::big : byte_order::little);
    if (layout->kind.isFloat) {
        turn_upside_down<float>(image, width);
        for (float& value : elements_of<float>(image))
            if (value > 1.7e38f) value = std::numeric_limits<float>::quiet_NaN(); // the mark of points without a height
        move_numbers(image, scale, zmin);
        settle_samples(image);
    } else {
        turn_upside_down<std::int16_t>(image, width);
        const std::int16_t marker[] = {32767};
        settle_markers(image, marker);
        move_axis(image, scale, zmin);
    }
    for (const auto& [key, text] : header.all()) image.strings.emplace(key, text);
    if (const std::string date = header.text("starttime"); !date.empty()) image.strings.emplace("\\Date", date);
    if (const std::string speed = header.text("scanspeed"); !speed.empty())
        image.strings.emplace("\\Speed", with_speed_units(speed));
    recording result;
    result.items.emplace_back(std::move(image));
    return result;
}

} // namespace vldv::formats
