#pragma once
#include "primitives/map/sample_runs.h"
#include "vldv_api.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

class VLAxis;

namespace vldv::surface {

struct measure_text;

/// A row of the statistics panel. Without a name it is a heading, whose text stands in `units`.
struct statistics_row {
    std::string name;
    double value = 0.0;
    std::string units;
    bool isHeight = false; ///< of the frame: all of these share a unit
    bool operator==(const statistics_row&) const = default;
};

/// Heights and roughness of a whole frame under their heading: "Zmax", "Zmin" and "Rmax" of the heights as they are,
/// "Rq", "Ra", "Rsk" and "Rku" of what is left without the best plane, the last two from moments about 0 and without
/// a subtraction of 3. All heights stand in the unit in which their range reads well.
/// \param samples     rows of `width`; only the heading for none
/// \param unmeasured  samples that do not count, in rising order: the plane is the best one of the others
VLDV_INTERNAL_API std::vector<statistics_row> frame_statistics(std::span<const std::int16_t> samples, int width,
                                                               const VLAxis& heights,
                                                               std::span<const primitives::sample_run> unmeasured = {});
/// The names of its rows behind the heading.
VLDV_INTERNAL_API std::span<const char* const> figure_names() noexcept;
/// What the panel says below the figures of samples that were left out of them, and of those that could not be, since
/// no text of the image tells which they are. No rows for none.
VLDV_INTERNAL_API std::vector<statistics_row> unmeasured_rows(std::size_t leftOut, std::size_t counted);

/// A figure in the unit in which it reads well.
VLDV_INTERNAL_API statistics_row reading_well(statistics_row row);

/// What a measurement says, under a heading of its own, a row for each item between ";": its name ends at the first
/// "=", or else ":", then follow number and unit. An item with neither is a name with the value 0. Only a text on show,
/// of at least `compactLength` characters: shorter ones stay on the picture.
std::vector<statistics_row> measure_rows(const measure_text& measure, int compactLength);

} // namespace vldv::surface
