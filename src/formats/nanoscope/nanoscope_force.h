#pragma once
#include "base/streams/byte_reader.h"
#include "formats/nanoscope/nanoscope_header.h"
#include "formats/shared/heights.h"
#include "formats/shared/left_out.h"
#include "formats/source.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vldv::formats {

/// One channel of force curves: what its list, with the help of the force and scan lists, says about the samples.
struct nanoscope_force {
    const nanoscope_section* section = nullptr;
    std::string channel;
    unsigned columns = 0, rows = 0;               ///< of a force volume; 0 for a single curve
    unsigned approach = 0, retract = 0, hold = 0; ///< samples of a curve, stored in this order
    unsigned sampleBytes = 2;
    bool isVariable = false; ///< rows of any length, each behind its count
    bool isOverTime = false; ///< shown in the order in which the samples are stored
    bool isOverBias = false; ///< a voltage is driven, stored from its end to its begin
    std::uint64_t offset = 0, length = 0;
    std::vector<value_scale> scales; ///< the one to show first
    VLAxis ramp;                     ///< of the approach samples: from the contact to the free end, or along a bias
    VLAxis x, y;                     ///< of a force volume
    std::vector<std::string> notes;  ///< numbers of scales and ramp that are none, and what follows

    unsigned samples() const noexcept { return approach + retract + hold; }
    std::uint64_t curves() const noexcept { return columns ? std::uint64_t{columns} * rows : 1; }
    /// A single curve whose ways have different counts.
    bool isPadded() const noexcept { return columns == 0 && retract != 0 && retract != approach; }
    /// Both ways are stored from the contact on.
    bool startsAtContact() const noexcept { return !isOverTime && !isOverBias && !isVariable; }
};

/// Reads counts, place, scales and axes. \return a reason why the samples cannot be there, or an empty text
std::string describe_nanoscope_force(const nanoscope_header& header, const nanoscope_section& section,
                                     std::uint64_t fileSize, nanoscope_force& out);

/// Scales of a force channel, the one to show first: the force where spring constant and sensitivity are known, the
/// deflection, the volts.
std::vector<value_scale> nanoscope_force_scales(const nanoscope_header& header, const nanoscope_section& section);

/// What of these scales is not as the header seems to mean it, because one of its numbers is none or 0.
std::vector<std::string> nanoscope_force_doubts(const nanoscope_header& header, const nanoscope_section& section);
/// What of the scale of the ramp is not as the header seems to mean it.
std::vector<std::string> nanoscope_ramp_doubts(const nanoscope_header& header, const nanoscope_section& section);

/// True when curves of a channel run over the time instead of the ramp.
bool is_nanoscope_time(const nanoscope_header& header, const nanoscope_section& section);

/// True when the ramp drives a voltage instead of the probe.
bool is_nanoscope_bias(const nanoscope_header& header, const nanoscope_section& section);

/// The ramp as an axis of `points` samples: from its full size, the contact, down to 0, or from begin to end of a bias;
/// index numbers when the header does not tell it.
VLAxis nanoscope_ramp(const nanoscope_header& header, const nanoscope_section& section, unsigned points);

/// Loads the samples of a channel: first one image with the approach and the retract as sub-images, the shorter of them
/// padded, then one for the hold. In a volume a retract of another count is an image of its own: with its own axis,
/// since volumes have no parameter stream. \param ids  in use already
base::read_result<std::vector<recorded_image>> load_nanoscope_force(source& file, const nanoscope_force& channel,
                                                                    std::vector<std::string>& ids);

/// A stream "Ramp" of what the ramp of each way is set to; the channel's `ramp` must be known.
recorded_image make_nanoscope_ramp(const nanoscope_force& channel, std::vector<std::string>& ids);

/// Adds all force channels of a file; a measured height becomes the parameter stream of the others. Without one, curves
/// whose ways have different counts get a stream "Ramp".
/// \param bytesLeft  that no image claims yet
/// \param missing  receives the channels that are not whole
/// \return a reason for refusing the file, or nothing
std::optional<base::read_error> add_nanoscope_force(source& file, const nanoscope_header& header,
                                                    std::uint64_t bytesLeft, left_out& missing, recording& out);

} // namespace vldv::formats
