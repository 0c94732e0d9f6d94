#include "formats/nanoscope/nanoscope_fixture.h"

#include "formats/instrument_fixture.h"
#include "formats/nanoscope/nanoscope.h"

namespace nanoscope_fixture {

static constexpr std::size_t headerLength = 4096;

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

image_part height_part(const std::string& samples, const std::string& direction)
{
    return {{"\\Samps/line: 4", "\\Number of lines: 2", "\\Scan Size: 400 200 nm", "\\Scan Line: Main",
             "\\Line Direction: " + direction, "\\@2:Image Data: S [Height] \"Height\"",
             "\\@2:Z scale: V [Sens. Zsens] (0.005 V/LSB) 1 V"},
            samples};
}

base::read_result<formats::recording> read(const std::string& file)
{
    return instrument_fixture::read(formats::read_nanoscope, file, "made.001");
}

} // namespace nanoscope_fixture
