#pragma once
#include "base/SPMDataStream.h"

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace curves {

/// Force curves at the points of a grid, one behind the other.
struct force_volume {
    std::span<const std::int16_t> samples;
    int length = 0;    ///< of a curve, positive
    VLAxis position{}; ///< along a curve
    VLAxis values{};   ///< of the samples
};

/// A number for each curve, as 16-bit numbers that wrap.
struct force_maps {
    std::vector<std::int16_t> rigidity; ///< 1000 times the slope of the contact, in units of values over position
    std::vector<std::int16_t> adhesion; ///< the smallest value above the zero line, in samples
};

struct map_options {
    unsigned threads = 0; ///< 0: as many as the machine has; the maps do not depend on it
    /// Told now and then how many curves are done, on the calling thread; may be empty.
    std::function<void(std::size_t done, std::size_t all)> progress{};
};

/// What `get_force_curve_stats` finds in each curve with both thresholds 1, as maps: number for number what one curve
/// after the other gives. \throws std::bad_alloc
force_maps map_forces(const force_volume& volume, const map_options& options = {});

/// Sub-image `sub` of an image of force curves: dimension 0 runs along a curve, 1 and 2 over the grid. Positions are
/// those of the first axis of dimension 0; of the value axes the first with its units counts, else the first.
/// Samples must be 16-bit.
force_volume volume_of(const SPMDataStream& stream, unsigned sub);
/// A map of such an image as an image of its own, over the axes of the grid.
SPMDataStream map_stream(const SPMDataStream& source, std::span<const std::int16_t> map, const char* name,
                         const char* label, const VLAxis& values);

} // namespace curves
