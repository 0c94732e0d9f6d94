#pragma once
#include "base/streams/byte_reader.h"
#include "formats/shared/force/directions.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vldv::formats {

/// A channel of an Omicron SCALA measurement as its parameter file describes it.
struct scala_channel {
    bool isSpectroscopy = false;
    std::string name; ///< "Z", or "I(V)"
    std::string displayName;
    scan_direction direction = scan_direction::unknown;
    value_scale scale;
    value_scale lsbScale; ///< of curves at single points, which count from 0
    std::string fileName; ///< without folders
    // Of spectroscopy:
    std::string parameter; ///< what was varied: "V", "Z"
    unsigned points = 0;
    double start = 0.0, end = 0.0, increment = 0.0;

    std::string label() const { return displayName.empty() ? name : displayName; }
};

/// The text file of a measurement.
struct scala_parameters {
    std::map<std::string, std::string> values; ///< "Gap Voltage" = "0.466000 V", the unit from the comment
    unsigned columns = 0, rows = 0;
    std::optional<double> width, height;     ///< of the field, nm; a sign says nothing
    double xOffset = 0.0, yOffset = 0.0;     ///< nm
    unsigned gridColumns = 0, gridRows = 0;  ///< points of spectroscopy; 0 without a grid
    double gridStepX = 0.0, gridStepY = 0.0; ///< their distances in pixels
    std::vector<scala_channel> channels;
};

/// True for the comment lines that such a file begins with.
bool is_scala_header(std::string_view head) noexcept;

base::read_result<scala_parameters> parse_scala_parameters(std::string_view text);

} // namespace vldv::formats
