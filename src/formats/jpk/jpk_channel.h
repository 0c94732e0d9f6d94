#pragma once
#include "formats/jpk/jpk_properties.h"
#include "formats/shared/heights.h"

#include <string>
#include <vector>

namespace vldv::formats {

/// What a segment's header says about one of its channels.
struct jpk_channel {
    std::string name;
    std::string file;                      ///< relative to the segment; empty for computed data
    SPMVarArrayType type = SPM_ARRAY_VOID; ///< of the numbers in the file
    double encoderFactor = 1.0, encoderOffset = 0.0;
    /// Calibrations of encoded numbers, the one to show first, the base (usually volts) among them.
    std::vector<value_scale> slots;
    bool isComputed = false; ///< start + i * step
    double start = 0.0, step = 0.0;
    std::string problem; ///< why it cannot be read, or empty
    /// Names of conversions that are not among the slots because a number of theirs is none, infinite or 0.
    std::string damagedSlots;

    /// Calibration `slot` for raw numbers.
    value_scale ofRaw(const value_scale& slot) const;
    /// The first calibration in these units, or null.
    const value_scale* slotIn(const std::string& units) const noexcept;
    bool sameEncoding(const jpk_channel& other) const noexcept;
    bool sameSlots(const jpk_channel& other) const noexcept;
};

/// True when numbers can be converted with it, and back.
bool is_usable(const value_scale& scale) noexcept;

/// The channels of a segment; references in `header` are resolved already.
std::vector<jpk_channel> read_jpk_channels(const jpk_properties& header);

/// "Approach", "Retract", "Pause", "Modulation", or what the header calls it.
std::string jpk_segment_name(const jpk_properties& header);

} // namespace vldv::formats
