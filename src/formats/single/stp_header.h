#pragma once
#include "base/streams/byte_reader.h"
#include "formats/shared/force/directions.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vldv::formats {

/// An image of a Molecular Imaging file.
struct stp_buffer {
    unsigned columns = 0, rows = 0;
    VLAxis x, y;
    value_scale scale;                  ///< of the unsigned samples
    std::optional<value_scale> voltage; ///< what a height was before its calibration
    std::string source;                 ///< the instrument's code of the channel; several are topography
    std::string label;
    scan_direction direction = scan_direction::unknown;
    std::string frameDirection; ///< "Up", "Down" or empty
    std::map<std::string, std::string> strings;
};

struct stp_header {
    std::map<std::string, std::string> strings;
    std::vector<stp_buffer> buffers;
};

bool is_stp_header(std::string_view head) noexcept;

/// Reads the lines before the data.
base::read_result<stp_header> parse_stp_header(std::string_view text);

} // namespace vldv::formats
