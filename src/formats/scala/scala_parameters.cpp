#include "formats/scala/scala_parameters.h"

#include "base/text.h"
#include "formats/shared/header_text.h"
#include "formats/shared/stated_number.h"
#include "formats/shared/stream_shape.h"
#include "formats/shared/text_units.h"
#include "formats/text/text_lines.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>

namespace vldv::formats {

namespace {

constexpr std::size_t maxChannels = 100;

/// A key with its value, and the lines without key below it.
struct parameter_block {
    std::string key, value;
    std::string units; ///< of a comment ";[nm]"
    std::vector<std::string> lines;
};

std::string_view without_comment(std::string_view text) noexcept
{
    return base::trimmed(text.substr(0, text.find(';')));
}

std::string units_of_comment(std::string_view line)
{
    const std::size_t comment = line.find(';');
    if (comment == std::string_view::npos) return {};
    const std::string_view text = line.substr(comment + 1);
    const std::size_t close = text.find(']');
    return text.starts_with('[') && close != std::string_view::npos ? header_text(text.substr(1, close - 1))
                                                                    : std::string();
}

std::vector<parameter_block> split_blocks(std::string_view text)
{
    std::vector<parameter_block> blocks;
    line_cursor lines(text);
    std::string_view line;
    while (lines.next(line)) {
        if (base::trimmed(line).empty() || line.starts_with(';')) continue;
        if (line.front() == ' ' || line.front() == '\t') {
            if (!blocks.empty()) blocks.back().lines.push_back(header_text(without_comment(line)));
        } else if (const std::size_t colon = line.find(':'); colon != std::string_view::npos) {
            blocks.push_back({header_text(line.substr(0, colon)),
                              header_text(without_comment(line.substr(colon + 1))),
                              units_of_comment(line),
                              {}});
        }
    }
    return blocks;
}

/// The lines of a block in their order; what is missing is empty.
class block_lines {
public:
    explicit block_lines(const std::vector<std::string>& lines_) : lines(lines_) {}
    std::string text() { return next < lines.size() ? lines[next++] : std::string(); }
    /// NaN for a text that is no number, nothing for an empty line.
    std::optional<double> number()
    {
        const std::string stated = text();
        if (base::trimmed(stated).empty()) return std::nullopt;
        return lone_number(stated).value_or(std::nan(""));
    }
    double numberOrZero() { return number().value_or(0.0); }

private:
    const std::vector<std::string>& lines;
    std::size_t next = 0;
};

scan_direction parse_direction(const std::string& text)
{
    if (base::equal_ignoring_case(text, "Forward")) return scan_direction::forward;
    return base::equal_ignoring_case(text, "Backward") ? scan_direction::reverse : scan_direction::unknown;
}

/// Minimum and maximum belong together, raw and physical; without these ranges the resolution is the step, without
/// that the numbers stay without units.
void read_scales(block_lines& lines, scala_channel& channel)
{
    const auto minRaw = lines.number(), maxRaw = lines.number(), minValue = lines.number(), maxValue = lines.number();
    const auto resolution = lines.number();
    const std::string units = normal_unit(lines.text());
    channel.lsbScale = resolution ? value_scale{*resolution, 0.0, units, "Resolution"}
                                  : value_scale{1.0, 0.0, "", "the numbers as they stand; no range or resolution"};
    channel.scale = channel.lsbScale;
    if (!minRaw || !maxRaw || !minValue || !maxValue || *maxRaw == *minRaw || *maxValue == *minValue) return;
    const double step = (*maxValue - *minValue) / (*maxRaw - *minRaw);
    channel.scale = {step, *minValue - *minRaw * step, units, "minimum and maximum raw and physical value"};
}

/// A set may have been moved: folders in front of a name mean nothing here.
std::string plain_file_name(const std::string& name) { return name.substr(name.find_last_of("/\\") + 1); }

scala_channel read_channel(const parameter_block& block, bool isSpectroscopy)
{
    block_lines lines(block.lines);
    scala_channel channel;
    channel.isSpectroscopy = isSpectroscopy;
    channel.name = block.value;
    if (isSpectroscopy) channel.parameter = lines.text();
    channel.direction = parse_direction(lines.text());
    read_scales(lines, channel);
    if (isSpectroscopy) {
        channel.points = static_cast<unsigned>(stated_count(lines.text(), 0xFFFFFF).value_or(0));
        channel.start = lines.numberOrZero();
        channel.end = lines.numberOrZero();
        channel.increment = lines.numberOrZero();
        for (int i = 0; i < 3; ++i) lines.text(); // acquisition time, delay time, feedback
    }
    channel.fileName = plain_file_name(lines.text());
    channel.displayName = lines.text();
    return channel;
}

/// A count that may be stored with a sign; 0 when there is none.
unsigned count_of(const scala_parameters& parameters, const char* key)
{
    const auto found = parameters.values.find(key);
    const auto number = found == parameters.values.end() ? std::nullopt : stated_number(found->second);
    const bool isCount = number && std::fabs(*number) < 1e6 && *number == std::floor(*number);
    return isCount ? static_cast<unsigned>(std::fabs(*number)) : 0;
}

/// NaN for a text that is no number.
std::optional<double> number_of(const scala_parameters& parameters, const char* key)
{
    const auto found = parameters.values.find(key);
    if (found == parameters.values.end()) return std::nullopt;
    return stated_number(found->second).value_or(std::nan(""));
}

/// A key that repeats, as for each of several counters, keeps all its values, a line each.
void add_value(scala_parameters& parameters, const parameter_block& block)
{
    std::string& value = parameters.values[block.key];
    if (!value.empty()) value += '\n';
    value += block.units.empty() ? block.value : block.value + " " + block.units;
}

void read_geometry(scala_parameters& parameters)
{
    parameters.columns = count_of(parameters, "Image Size in X");
    parameters.rows = count_of(parameters, "Image Size in Y");
    parameters.width = number_of(parameters, "Field X Size in nm");
    parameters.height = number_of(parameters, "Field Y Size in nm");
    parameters.xOffset = number_of(parameters, "X Offset").value_or(0.0);
    parameters.yOffset = number_of(parameters, "Y Offset").value_or(0.0);
    parameters.gridColumns = count_of(parameters, "Spectroscopy Points in X");
    parameters.gridRows = count_of(parameters, "Spectroscopy Lines in Y");
    parameters.gridStepX = std::fabs(number_of(parameters, "Spectroscopy Grid Value in X").value_or(0.0));
    parameters.gridStepY = std::fabs(number_of(parameters, "Spectroscopy Grid Value in Y").value_or(0.0));
}

} // namespace

bool is_scala_header(std::string_view head) noexcept
{
    const std::string_view start = head.substr(0, 200);
    return start.starts_with(';') && start.find("Omicron SPM Control.") != std::string_view::npos &&
           start.find("Parameter file for SPM data.") != std::string_view::npos;
}

base::read_result<scala_parameters> parse_scala_parameters(std::string_view text)
{
    scala_parameters parameters;
    for (const parameter_block& block : split_blocks(text)) {
        const bool isTopography = block.key == "Topographic Channel",
                   isSpectroscopy = block.key == "Spectroscopy Channel";
        if (isTopography || isSpectroscopy)
            parameters.channels.push_back(read_channel(block, isSpectroscopy));
        else if (!block.value.empty())
            add_value(parameters, block);
    }
    if (parameters.channels.empty()) return base::read_error{0, "no channel is described"};
    if (parameters.channels.size() > maxChannels) return base::read_error{0, "more than 100 channels"};
    read_geometry(parameters);
    if (!is_image_side(parameters.columns) || !is_image_side(parameters.rows))
        return base::read_error{0, "Image Size in X or Y is missing, 0 or above 65536"};
    return parameters;
}

} // namespace vldv::formats
