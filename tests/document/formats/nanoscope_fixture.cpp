#include "document/formats/nanoscope_fixture.h"

#include "document/formats/nanoscope.h"

#include <stdexcept>

namespace nanoscope_fixture {

namespace {

constexpr std::size_t headerLength = 4096;

std::string little(std::uint32_t value, int bytes)
{
    std::string out;
    for (int i = 0; i < bytes; ++i) out += static_cast<char>(value >> (8 * i) & 0xFFu);
    return out;
}

} // namespace

std::string build(const file_parts& parts)
{
    const std::string lineEnd = "\r\n";
    std::string header = parts.magic + lineEnd, data;
    for (const std::string& line : parts.fileLines) header += line + lineEnd;
    header += "\\Data length: " + std::to_string(headerLength) + lineEnd;
    for (const std::string& line : parts.scanLines) header += line + lineEnd;
    for (const image_part& image : parts.images) {
        header += image.list + lineEnd;
        header += "\\Data offset: " + std::to_string(headerLength + data.size()) + lineEnd;
        header += "\\Data length: " + std::to_string(image.samples.size()) + lineEnd;
        for (const std::string& line : image.lines) header += line + lineEnd;
        data += image.samples;
    }
    header += "\\*File list end" + lineEnd + "\x1A";
    header.resize(headerLength, '\0');
    return header + data;
}

std::string samples16(const std::vector<int>& values)
{
    std::string out;
    for (const int value : values) out += little(static_cast<std::uint32_t>(value), 2);
    return out;
}

std::string samples32(const std::vector<std::int32_t>& values)
{
    std::string out;
    for (const std::int32_t value : values) out += little(static_cast<std::uint32_t>(value), 4);
    return out;
}

image_part height_part(const std::string& samples, const std::string& direction)
{
    return {{"\\Samps/line: 4", "\\Number of lines: 2", "\\Scan Size: 400 200 nm", "\\Scan Line: Main",
             "\\Line Direction: " + direction, "\\@2:Image Data: S [Height] \"Height\"",
             "\\@2:Z scale: V [Sens. Zsens] (0.005 V/LSB) 1 V"},
            samples};
}

base::read_result<formats::recording> read(const std::string& file)
{
    formats::memory_source source(std::as_bytes(std::span(file)), "made.001");
    return formats::read_nanoscope(source);
}

const formats::recorded_image& image_at(const formats::recording& recording, std::size_t index)
{
    const auto* image =
        index < recording.items.size() ? std::get_if<formats::recorded_image>(&recording.items[index]) : nullptr;
    if (!image) throw std::out_of_range("no image " + std::to_string(index));
    return *image;
}

std::vector<int> raw_of(const formats::recorded_image& image)
{
    const auto* raw = static_cast<const std::int16_t*>(image.stream.array_data());
    return {raw, raw + image.stream.array_length()};
}

std::vector<double> physical_of(const formats::recorded_image& image)
{
    std::vector<double> values;
    for (const int raw : raw_of(image)) values.push_back(image.stream.values.get_axis(0).at(raw));
    return values;
}

} // namespace nanoscope_fixture
