#include "formats/single/stp_header.h"

#include "base/text.h"
#include "formats/shared/fixed_text.h"
#include "formats/shared/stated_number.h"
#include "formats/shared/stream_shape.h"
#include "formats/shared/text_units.h"
#include "formats/text/text_lines.h"

#include <cmath>
#include <optional>

namespace vldv::formats {

namespace {

constexpr std::size_t keyWidth = 14;
constexpr double halfRange = 32768.0;

using line_table = std::map<std::string, std::string>;

std::string text_of(const line_table& lines, const char* key)
{
    const auto found = lines.find(key);
    return found == lines.end() ? std::string() : found->second;
}

/// What a line states, NaN for a text that is no number; nothing when there is no such line.
std::optional<double> number_of(const line_table& lines, const char* key)
{
    const std::string stated = text_of(lines, key);
    if (stated.empty()) return std::nullopt;
    return stated_number(stated).value_or(std::nan(""));
}

unsigned count_of(const line_table& lines, const char* key)
{
    const double number = number_of(lines, key).value_or(0.0);
    return number >= 1.0 && number <= 1e6 && number == std::floor(number) ? static_cast<unsigned>(number) : 0;
}

/// The lines before the first "buffer_id", then those of each buffer. A key that comes again keeps its first value.
std::vector<line_table> split_buffers(std::string_view text)
{
    std::vector<line_table> tables(1);
    line_cursor lines(text);
    std::string_view line;
    while (lines.next(line)) {
        if (line.empty() || line.front() == ' ') continue;
        const std::string key = header_text(line.substr(0, keyWidth));
        const std::string value = line.size() > keyWidth ? header_text(line.substr(keyWidth)) : std::string();
        if (key == "buffer_id") tables.emplace_back();
        tables.back().emplace(key, value);
    }
    return tables;
}

VLAxis side_axis(const line_table& buffer, const char* key, unsigned points)
{
    const auto length = number_of(buffer, key);
    return length ? stated_side(0.0, *length, points, "\u00C5") : VLAxis();
}

void set_topography_scale(const line_table& global, const line_table& lines, stp_buffer& buffer)
{
    const auto perVolt = number_of(global, "z_v_to_angs"), range = number_of(lines, "servo_range");
    buffer.scale = {1.0 / halfRange, 0.0, "\u00C5", "samples alone"};
    if (!perVolt || !range) return;
    buffer.scale.step = *perVolt * *range / halfRange;
    buffer.scale.origin = "z_v_to_angs, servo_range";
    buffer.voltage = value_scale{*range / halfRange, 0.0, "V", "servo_range"};
}

value_scale external_scale(const line_table& buffer)
{
    const auto factor = number_of(buffer, "ExSourceZFact");
    if (!factor) return {};
    const bool isBipolar = base::equal_ignoring_case(text_of(buffer, "ExSourceZBip"), "TRUE");
    return {*factor, isBipolar ? -halfRange * *factor : 0.0, normal_unit(text_of(buffer, "ExSourceZUnit")),
            "ExSourceZFact, ExSourceZBip, ExSourceZUnit"};
}

/// Inputs measure from -10 V to 10 V.
const value_scale voltageScale{10.0 / halfRange, -10.0, "V", "source_mode"};

/// What source 2 measures: a tip's current, or what a cantilever does. No other field is known to tell which.
constexpr const char* detectorName = "Current, deflection or amplitude";

void set_channel(const line_table& global, const line_table& lines, stp_buffer& buffer)
{
    const unsigned mode = count_of(lines, "source_mode");
    buffer.source = text_of(lines, "source_mode");
    const bool isInput = mode == 8 || (mode >= 12 && mode <= 14) || (mode >= 16 && mode <= 23);
    if (mode == 1 || mode == 9 || mode == 10 || mode == 24) {
        buffer.label = "Topography";
        set_topography_scale(global, lines, buffer);
    } else if (mode == 2 || isInput) {
        buffer.label = mode == 2 ? detectorName : "Input " + std::to_string(mode);
        buffer.scale = voltageScale;
    } else if (mode == 99) {
        buffer.label = "External";
        buffer.scale = external_scale(lines);
    } else {
        buffer.label = "Source " + buffer.source;
    }
}

void set_directions(const line_table& lines, stp_buffer& buffer)
{
    const std::string fast = text_of(lines, "collect_mode"), slow = text_of(lines, "scan_dir");
    if (fast == "1") buffer.direction = scan_direction::forward;
    if (fast == "2") buffer.direction = scan_direction::reverse;
    if (slow == "0") buffer.frameDirection = "Down";
    if (slow == "1") buffer.frameDirection = "Up";
}

/// Under the keys that views show, the others as they are.
line_table strings_of(line_table lines)
{
    const auto rename = [&](const char* from, const char* to) {
        auto node = lines.extract(from);
        if (node.empty() || node.mapped().empty()) return;
        node.key() = to;
        lines.insert(std::move(node));
    };
    const std::string time = text_of(lines, "time");
    rename("Date", "\\Date");
    rename("line_freq", "\\Scan rate");
    if (!time.empty() && lines.contains("\\Date")) lines["\\Date"] += " " + time;
    std::erase_if(lines, [](const auto& line) { return line.second.empty(); });
    return lines;
}

} // namespace

bool is_stp_header(std::string_view head) noexcept { return head.starts_with("UK SOFT\r\n"); }

base::read_result<stp_header> parse_stp_header(std::string_view text)
{
    const auto tables = split_buffers(text);
    if (tables.size() < 2) return base::read_error{0, "no buffer_id in the header"};
    stp_header header;
    header.strings = strings_of(tables[0]);
    header.strings.erase("UK SOFT");
    for (std::size_t i = 1; i < tables.size(); ++i) {
        stp_buffer buffer;
        buffer.columns = count_of(tables[i], "samples_x");
        buffer.rows = count_of(tables[i], "samples_y");
        if (!is_image_side(buffer.columns) || !is_image_side(buffer.rows))
            return base::read_error{0, "buffer " + std::to_string(i) +
                                           ": samples_x or samples_y is missing, 0 or above 65536"};
        buffer.x = side_axis(tables[i], "length_x", buffer.columns);
        buffer.y = side_axis(tables[i], "length_y", buffer.rows);
        set_channel(tables[0], tables[i], buffer);
        set_directions(tables[i], buffer);
        buffer.strings = strings_of(tables[i]);
        if (!buffer.frameDirection.empty()) buffer.strings["\\Frame direction"] = buffer.frameDirection;
        header.buffers.push_back(std::move(buffer));
    }
    return header;
}

} // namespace vldv::formats
