#include "formats/single/wsxm.h"

#include "base/text.h"
#include "base/units.h"
#include "formats/shared/force/curve_group.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stated_number.h"
#include "formats/shared/stream_shape.h"
#include "formats/single/wsxm_header.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace vldv::formats {

namespace {

constexpr std::string_view magic = "WSxM file copyright";

void add_strings(const wsxm_header& header, std::map<std::string, std::string>& strings)
{
    for (const auto& [key, text] : header.lines)
        if (!text.empty() && key.front() != '.') strings.emplace(key, text);
    const auto show = [&](const char* label, const char* key) {
        if (const std::string& text = header.value("General Info", label); !text.empty()) strings.emplace(key, text);
    };
    show("Acquisition time", "\\Date");
    show("X scanning direction", "\\Line direction");
    show("Y scanning direction", "\\Frame direction");
    if (const std::string& rate = header.value("Control", "X-Frequency"); !rate.empty())
        strings.emplace("\\Scan rate", rate);
}

VLAxis lateral(const wsxm_header& header, const std::string& way, unsigned count)
{
    const auto size = header.measure("Control", way + " Amplitude");
    if (!size) return {};
    const auto offset = header.measure("Control", way + " Offset");
    double start = 0.0; // of an offset in a unit that says nothing in the size's
    if (offset && !std::isfinite(offset->value))
        start = offset->value;
    else if (offset && units_convertable(offset->units.c_str(), size->units.c_str()) > 0)
        start = convert_size(offset->units.c_str(), size->units.c_str(), offset->value);
    return stated_side(start, size->value, count, size->units);
}

/// The span of the samples. 0 and no unit when it is not stated, NaN when it is no number.
quantity amplitude_of(const wsxm_header& header)
{
    const std::string& text = header.value("General Info", "Z Amplitude");
    return wsxm_quantity(text).value_or(quantity{text.empty() ? 0.0 : std::nan(""), {}});
}

/// Units of the heights; "Pi" is a number, and Pi times 1 stands for half a turn in radians.
value_scale units_of(const quantity& amplitude)
{
    value_scale scale{1.0, 0.0, amplitude.units, "Z Amplitude"};
    if (scale.units == "Pi") scale = {std::numbers::pi, 0.0, "", "Z Amplitude in Pi"};
    return scale;
}

/// The element type that a header names, or void.
SPMVarArrayType element_type(const std::string& name)
{
    if (name.empty() || name == "short" || name == "integer") return SPM_ARRAY_INT16;
    return name == "double" ? SPM_ARRAY_FLOAT64 : name == "float" ? SPM_ARRAY_FLOAT32 : SPM_ARRAY_VOID;
}

/// 16-bit numbers span the stated amplitude, and 0 is the height 0. Where none is stated they mean nothing but
/// themselves.
value_scale scale_of_numbers(std::span<const std::int16_t> samples, const quantity& amplitude, bool isStated)
{
    const auto [lowest, highest] = std::minmax_element(samples.begin(), samples.end());
    value_scale scale = units_of(amplitude);
    if (*lowest == *highest) return {1.0, -1.0 * *lowest, scale.units, "flat image"};
    if (!isStated) return {1.0, 0.0, "", "the raw numbers, since Z Amplitude is missing"};
    const double span = *highest - *lowest;
    scale.step *= amplitude.value < 0.0 ? 0.0 : amplitude.value / span; // which a finished recording does not hold
    scale.origin +=
        " = " + base::shortest(amplitude.value) + " " + amplitude.units + " over a raw span of " + base::shortest(span);
    return scale;
}

/// Samples run from the lower right corner to the left and upwards.
template <class T>
void turn_rows(recorded_image& image, unsigned width)
{
    const auto samples = elements_of<T>(image);
    for (std::size_t at = 0; at < samples.size(); at += width)
        std::reverse(samples.begin() + static_cast<std::ptrdiff_t>(at),
                     samples.begin() + static_cast<std::ptrdiff_t>(at + width));
}

/// Why there is no count in a field of this text.
std::string no_count(const std::string& text)
{
    return text.empty() ? " is missing" : ", \"" + text + "\", is no number from 1 to 65536";
}

/// Pi stands for half a turn.
void note_unit(recorded_image& image, const std::string& field, const quantity& stated, const std::string& text)
{
    if (std::isfinite(stated.value) && !text.empty() && stated.units != "Pi" && !is_known_unit(stated.units))
        image.notes.push_back("the unit of " + field + ", \"" + text + "\", is not known");
}

base::read_result<recording> read_image(source& file, const wsxm_header& header)
{
    const auto refuse = [&](const std::string& reason) { return base::read_error{header.end, reason}; };
    const auto columns = static_cast<unsigned>(header.count("General Info", "Number of columns", 65536));
    const auto rows = static_cast<unsigned>(header.count("General Info", "Number of rows", 65536));
    for (const char* count : {"Number of columns", "Number of rows"})
        if (header.count("General Info", count, 65536) == 0)
            return refuse(count + no_count(header.value("General Info", count)));
    const std::string& typeName = header.value("General Info", "Image Data Type");
    const SPMVarArrayType type = element_type(typeName);
    if (type == SPM_ARRAY_VOID) return refuse("Image Data Type \"" + typeName + "\" is not known");
    if (!holds_numbers(file.size(), header.end, std::uint64_t{columns} * rows, element_size(type)))
        return refuse("Number of columns times Number of rows asks for more samples than the file holds");
    const auto amplitude = amplitude_of(header);

    std::string label = header.value("General Info", "Acquisition channel");
    if (label.empty()) label = "Topography";
    std::vector<std::string> ids;
    const extent sides[] = {{columns, lateral(header, "X", columns)}, {rows, lateral(header, "Y", rows)}};
    recorded_image image = make_samples(unique_id(label, ids), label, sides, 1, units_of(amplitude), type);
    const std::span bytes(static_cast<std::byte*>(image.stream.array_data()),
                          std::size_t{image.stream.array_length()} * element_size(type));
    if (!file.read(header.end, bytes)) return refuse("samples cannot be read");
    if (type == SPM_ARRAY_INT16) {
        turn_rows<std::int16_t>(image, columns);
        const value_scale scale = scale_of_numbers(elements_of<std::int16_t>(image), amplitude,
                                                   !header.value("General Info", "Z Amplitude").empty());
        image.stream.values.set_axis(0, VLAxis(scale.offset, scale.step, scale.units.c_str()));
        image.strings["\\Z scale"] = describe_scale(scale);
        constexpr double voltsPerStep = 10.0 / 32768.0; // of every instrument that writes conversion factors
        if (!header.value("General Info", "Conversion Factor 00").empty())
            add_calibration(image, scale, {voltsPerStep, 0.0, "V", "converter"});
    } else if (type == SPM_ARRAY_FLOAT32) {
        turn_rows<float>(image, columns);
    } else {
        turn_rows<double>(image, columns);
    }
    for (const char* side : {"X Amplitude", "Y Amplitude"})
        if (const auto size = header.measure("Control", side)) {
            note_length(image, side, size->value, header.value("Control", side));
            note_unit(image, side, *size, header.value("Control", side));
        }
    note_unit(image, "Z Amplitude", amplitude, header.value("General Info", "Z Amplitude"));
    const std::string surplus = told_surplus("Number of columns times Number of rows, " + std::to_string(columns) +
                                                 " x " + std::to_string(rows) + ",",
                                             bytes.size(), file.size() - header.end);
    if (!surplus.empty()) image.notes.push_back(surplus);
    if (type != SPM_ARRAY_INT16 && std::isnan(amplitude.value))
        image.notes.emplace_back("Z Amplitude is no number with a unit: values have none");
    settle_samples(image);
    add_strings(header, image.strings);
    recording result;
    result.items.emplace_back(std::move(image));
    return result;
}

/// Takes numbers between blanks. \return false when there are fewer than `out` holds
bool parse_numbers(std::string_view& text, std::span<double> out)
{
    for (double& value : out) {
        const auto number = stated_number(text, &text);
        if (!number) return false;
        value = *number;
    }
    return true;
}

/// The axis that all lines share, or nothing when x is not equally spaced.
std::optional<VLAxis> shared_axis(const std::vector<named_curve>& x, const std::string& units)
{
    const std::vector<double>& first = x.front().values;
    if (first.size() < 2) return std::nullopt;
    const double step = (first.back() - first.front()) / static_cast<double>(first.size() - 1);
    if (!std::isfinite(step) || step == 0.0) return std::nullopt;
    for (const named_curve& line : x)
        for (std::size_t i = 0; i < first.size(); ++i)
            if (!(std::fabs(line.values[i] - (first.front() + step * static_cast<double>(i))) <=
                  1e-3 * std::fabs(step)))
                return std::nullopt;
    return VLAxis(first.front(), step, units.c_str());
}

/// A curve file: each row holds x and y of every line.
base::read_result<recording> read_curves(source& file, const wsxm_header& header)
{
    const auto refuse = [&](const std::string& reason) { return base::read_error{header.end, reason}; };
    const std::string section = "General Info";
    const std::uint64_t lines = std::max<std::uint64_t>(1, header.count(section, "Number of lines", 65536));
    const std::uint64_t points = header.count(section, "Number of points", 0xFFFFFFFFu);
    if (points == 0) return refuse("Number of points is missing or 0");
    const std::uint64_t bytes = file.size() - header.end;
    if (points > (bytes + 1) / (4 * lines)) // each number takes a digit and a blank, the last one only a digit
        return refuse("Number of points asks for more numbers than the file holds");
    std::string text(static_cast<std::size_t>(bytes), '\0');
    if (!file.read(header.end, std::as_writable_bytes(std::span(text)))) return refuse("samples cannot be read");
    std::vector<double> numbers(static_cast<std::size_t>(points * lines * 2));
    std::string_view rest = text;
    if (!parse_numbers(rest, numbers)) return refuse("fewer numbers than Number of points and Number of lines tell");

    std::vector<named_curve> x(static_cast<std::size_t>(lines)), y = x;
    for (std::size_t line = 0; line < lines; ++line) {
        x[line].name = y[line].name = lines > 1 ? "Line " + std::to_string(line + 1) : "";
        for (std::size_t i = 0; i < points; ++i) {
            x[line].values.push_back(numbers[(i * lines + line) * 2]);
            y[line].values.push_back(numbers[(i * lines + line) * 2 + 1]);
        }
    }
    const auto named = [&](const char* key, const char* otherwise) {
        const std::string& kept = header.value(section, key);
        return kept.empty() ? std::string(otherwise) : kept;
    };
    const std::string xUnits = normal_unit(header.value(section, "X axis unit"));
    const value_scale yScale{1.0, 0.0, normal_unit(header.value(section, "Y axis unit")), "Y axis unit"};
    const std::string xLabel = named("X axis text", "X"), yLabel = named("Y axis text", "Y");
    std::vector<std::string> ids;
    recording result;
    const auto axis = shared_axis(x, xUnits);
    std::string parameter;
    if (!axis) {
        parameter = unique_id(xLabel, ids);
        result.items.emplace_back(make_curve_group(parameter, xLabel, {}, {1.0, 0.0, xUnits, "X axis unit"}, x));
    }
    recorded_image image = make_curve_group(unique_id(yLabel, ids), yLabel, axis.value_or(VLAxis()), yScale, y);
    if (!axis) image.stream.set_parameter_stream(parameter.c_str());
    if (!base::trimmed(rest).empty())
        image.notes.push_back("more numbers than Number of points, " + std::to_string(points) +
                              ", and Number of lines, " + std::to_string(lines) + ", ask for");
    for (const char* unit : {"X axis unit", "Y axis unit"})
        if (const std::string& stated = header.value(section, unit); !stated.empty() && !is_known_unit(stated))
            image.notes.push_back(std::string(unit) + ", \"" + stated + "\", is not known");
    add_strings(header, image.strings);
    result.items.emplace_back(std::move(image));
    return result;
}

} // namespace

bool sniff_wsxm(std::span<const std::byte> head)
{
    const std::string_view text(reinterpret_cast<const char*>(head.data()), head.size());
    const std::size_t second = text.find('\n');
    return text.starts_with(magic) && second != std::string_view::npos &&
           !text.substr(second + 1).starts_with("WSxM ASCII");
}

base::read_result<recording> read_wsxm(source& file)
{
    std::string start(magic.size(), '\0');
    if (!file.read(0, std::as_writable_bytes(std::span(start))) || start != magic)
        return base::read_error{0, "not a WSxM header"};
    const auto header = read_wsxm_header(file);
    if (!header) return header.error();
    if (header->kind == "SxM Image file") return read_image(file, *header);
    if (header->kind.ends_with("curve file")) return read_curves(file, *header);
    return base::read_error{0, "files of the kind \"" + header->kind + "\" cannot be opened, only images and curves"};
}

} // namespace vldv::formats
