#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/shared/bytes.h"
#include "formats/source.h"

#include <cstdint>
#include <string>
#include <vector>

namespace nanoscope_fixture {

/// One image of a made-up file; texts are header lines without line ends.
struct image_part {
    std::vector<std::string> lines; ///< without Data offset and Data length
    std::string samples;            ///< bytes as they stand in the file
    std::string list = "\\*Ciao image list";
};

/// A file of header version 3 and later; 4096 bytes of header with offsets and lengths that fit.
struct file_parts {
    std::string magic = "\\*File list";
    std::vector<std::string> fileLines = {"\\Version: 0x05120000", "\\Date: 09:57:48 AM Tue Jan 12 2016"};
    std::vector<std::string> scanLines = {"\\*Ciao scan list", "\\Scan Size: 400 nm", "\\Samps/line: 4",
                                          "\\Lines: 2",        "\\Scan Rate: 1.5",    "\\@Sens. Zsens: V 65536 nm/V"};
    std::vector<image_part> images;
};

std::string build(const file_parts& parts);

inline std::string samples16(const std::vector<int>& values) { return formats::in_bytes<std::int16_t>(values); }
inline std::string samples32(const std::vector<int>& values) { return formats::in_bytes<std::int32_t>(values); }

/// A 4 x 2 height image: 1 V over the full range times 65536 nm/V, which makes samples of 16 bits nanometres.
image_part height_part(const std::string& samples, const std::string& direction = "Trace");

base::read_result<formats::recording> read(const std::string& file);

} // namespace nanoscope_fixture
