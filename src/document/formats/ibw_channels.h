#pragma once
#include "document/formats/directions.h"
#include "document/formats/ibw_header.h"

#include <string>
#include <vector>

namespace formats {

/// True when the MFP-3D's program wrote the wave: names, units and segments then follow its conventions.
bool is_mfp3d(const ibw_wave& wave);

/// Channel, direction and what is left of a layer's name: "HeightRetraceMod0" is Height, reverse, "Mod0".
struct ibw_channel {
    std::string channel, suffix;
    scan_direction direction = scan_direction::unknown;
};
ibw_channel split_ibw_channel(const std::string& label);

/// Units of a channel; the wave's own for other programs' waves.
std::string ibw_channel_units(const ibw_wave& wave, const std::string& channel);

/// A part of a force curve.
struct ibw_segment {
    std::string name;
    std::size_t first = 0, count = 0;
};

/// The segments that "Indexes" and "Direction" of the note cut a curve of `points` into; the whole without them.
std::vector<ibw_segment> ibw_segments(const ibw_wave& wave, std::size_t points);

} // namespace formats
