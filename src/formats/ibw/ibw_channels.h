#pragma once
#include "formats/ibw/ibw_header.h"
#include "formats/shared/force/directions.h"

#include <optional>
#include <string>
#include <vector>

namespace vldv::formats {

/// True when the MFP-3D's program wrote the wave: names, units and segments then follow its conventions.
bool is_mfp3d(const ibw_wave& wave);

/// The finite number that a line of the note begins with.
std::optional<double> ibw_note_number(const ibw_wave& wave, const char* key);

/// Channel, direction and what is left of a layer's name: "HeightRetraceMod0" is Height, reverse, "Mod0".
struct ibw_channel {
    std::string channel, suffix;
    scan_direction direction = scan_direction::unknown;
};
ibw_channel split_ibw_channel(const std::string& label);

/// Raw numbers of a channel, named without its direction, as they stand: the wave's own units for other programs'
/// waves, else those of the note or of the channel's name.
value_scale ibw_channel_scale(const ibw_wave& wave, const std::string& channel);

/// Adds the force and the volts that the note knows for a deflection in metres.
void add_ibw_deflection(recorded_image& image, const ibw_wave& wave, const std::string& channel,
                        const value_scale& scale);

/// A part of a force curve.
struct ibw_segment {
    std::string name;
    std::size_t first = 0, count = 0;
};

/// The segments that "Indexes" and "Direction" of the note cut a curve of `points` into; the whole without them.
std::vector<ibw_segment> ibw_segments(const ibw_wave& wave, std::size_t points);

} // namespace vldv::formats
