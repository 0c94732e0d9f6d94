#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/scala/scala_parameters.h"
#include "formats/source.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vldv::formats {

/// Curves that were taken at single points in one direction.
struct scala_points {
    const scala_channel* channel = nullptr;
    std::vector<std::vector<double>> x, raw;
    std::string places;     ///< "x y" in nm, a line each
    std::size_t stated = 0; ///< how many curves the file says that it has; 0 when it does not
};

/// True for a channel whose data file is a text of curves.
bool is_scala_points(const scala_channel& channel) noexcept;

/// True for the beginning of such a text.
bool is_scala_points_text(std::string_view head) noexcept;

/// Reads such a file: "BEGIN COORD" … "END" with the places, then "BEGIN" … "END" with x and raw value of each curve.
base::read_result<scala_points> read_scala_points(source& data, const scala_channel& channel);

/// The curves of both directions of a channel, or of one, as sub-images; before them their positions where these are
/// uneven or differ. `parts` is not empty and loses its values.
base::read_result<std::vector<recorded_image>> make_scala_points(std::span<scala_points> parts,
                                                                 std::vector<std::string>& ids);

} // namespace vldv::formats
