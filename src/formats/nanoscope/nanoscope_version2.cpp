#include "formats/nanoscope/nanoscope_version2.h"

#include "base/text.h"
#include "formats/nanoscope/nanoscope_header.h"
#include "formats/nanoscope/nanoscope_samples.h"
#include "formats/shared/heights.h"
#include "formats/shared/stated_number.h"
#include "formats/shared/stream_shape.h"

#include <map>
#include <optional>
#include <string_view>

namespace vldv::formats {

namespace {

constexpr std::size_t headerLength = 2048;

using key_values = std::map<std::string, std::string>;

/// Lines `num_samp = 400`, ended by Ctrl-Z; lines without "=" are left out.
key_values parse_lines(std::string_view text)
{
    key_values values;
    text = text.substr(0, text.find('\x1A'));
    for (const std::string_view line : base::split(text, '\n')) {
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos) continue;
        const std::string value(base::trimmed(line.substr(equals + 1)));
        if (!value.empty())
            values.emplace(base::latin1_to_utf8(base::trimmed(line.substr(0, equals))), base::latin1_to_utf8(value));
    }
    return values;
}

/// NaN for a text that is no number.
std::optional<double> number_of(const key_values& values, const char* key)
{
    const auto found = values.find(key);
    if (found == values.end()) return std::nullopt;
    return stated_number(found->second).value_or(std::nan(""));
}

value_scale scale_of(const key_values& values)
{
    value_scale scale;
    const auto height = number_of(values, "z_scale");
    if (!height) {
        scale.origin = "no z_scale in the header";
        return scale;
    }
    scale.step = *height / 16384.0;
    scale.units = "nm";
    scale.origin = "z_scale = " + base::shortest(*height) + " nm, raw span = 16384";
    return scale;
}

/// The keys that views know by another name.
void add_shown_strings(const key_values& values, std::map<std::string, std::string>& strings)
{
    const auto add = [&](const char* key, const char* shown) {
        const auto found = values.find(key);
        if (found != values.end()) strings.emplace(shown, found->second);
    };
    add("time", "\\Date");
    add("scan_rate", "\\Scan rate");
}

} // namespace

base::read_result<recording> read_nanoscope_version2(source& file)
{
    std::string text(headerLength, '\0');
    if (file.size() < headerLength || !file.read(0, std::as_writable_bytes(std::span(text))))
        return base::read_error{file.size(), "NanoScope header of 2048 bytes is cut short"};
    const key_values values = parse_lines(text);
    const auto side = values.count("num_samp") ? leading_count(values.at("num_samp")) : std::nullopt;
    if (!side || *side == 0 || *side > 65536)
        return base::read_error{0, "num_samp is missing, no number, 0 or above 65536"};
    if (*side * *side * 2 > file.size() - headerLength)
        return base::read_error{headerLength, "num_samp asks for more samples than the file holds"};

    image_frame frame;
    frame.width = frame.height = static_cast<unsigned>(*side);
    if (const auto size = number_of(values, "scan_sz")) frame.x = frame.y = stated_side(0.0, *size, frame.width, "nm");
    recorded_image image = make_image("Height", "Height", frame, scale_of(values));
    if (!read_samples(file, headerLength, samples_of(image.stream)))
        return base::read_error{headerLength, "samples cannot be read"};
    add_shown_strings(values, image.strings);
    recording result;
    result.strings = values;
    add_shown_strings(values, result.strings);
    result.items.emplace_back(std::move(image));
    return result;
}

} // namespace vldv::formats
