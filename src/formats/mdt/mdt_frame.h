#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/shared/force/directions.h"
#include "formats/source.h"

#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace vldv::formats {

/// One frame of an .mdt file: where it lies and what its header says.
struct mdt_frame {
    std::uint64_t offset = 0, size = 0; ///< header included; the whole frame lies inside the file
    unsigned number = 0;                ///< from 1, as the instrument's program counts
    unsigned type = 0;
    unsigned headerBytes = 22;
    unsigned variableBytes = 0;
    std::string date;  ///< "2005-12-07 09:51:06"
    double done = 0.0; ///< progress of the file before this frame
};

/// An image of a frame, its samples still in the file: one direction of a channel.
struct mdt_plane {
    channel_plane plane;
    std::uint64_t offset = 0; ///< of the first sample, the left one of the bottom row
    SPMVarArrayType type = SPM_ARRAY_INT16;
    std::map<std::string, std::string> strings;
    std::vector<std::string> notes;
};

/// What a frame holds: planes that may have to be joined with others, or finished images.
using mdt_content = std::vector<std::variant<mdt_plane, recorded_image>>;

/// The bytes of a frame from `from` on, at most `most`.
std::vector<std::byte> read_frame_bytes(source& file, const mdt_frame& frame, std::uint64_t from, std::uint64_t most);

/// Readers of the frame types. The error's reason names the field; offsets count from the start of the file.
base::read_result<mdt_content> read_mdt_scan(source& file, const mdt_frame& frame);   // 0
base::read_result<mdt_content> read_mdt_curves(source& file, const mdt_frame& frame); // 1, 201
base::read_result<mdt_content> read_mdt_array(source& file, const mdt_frame& frame);  // 106
base::read_result<mdt_content> read_mdt_points(source& file, const mdt_frame& frame); // 190

/// Axis of an old frame: the unit code is resolved, Angstrom becomes nm. A step of 0 states none: then points, or the
/// raw numbers, are counted.
struct mdt_axis {
    double offset = 0.0, step = 1.0;
    std::string units;
    bool isStated = true;
};
/// What is to be said of the axes of a frame that state no step.
std::vector<std::string> notes_on_steps(std::initializer_list<std::pair<const char*, const mdt_axis*>> axes);
mdt_axis read_mdt_axis(base::byte_reader& in) noexcept;

/// Unit of a code: what numbers are multiplied with to be in `units`. Angstrom becomes nm; unknown codes have no text.
struct mdt_unit {
    double factor = 1.0;
    const char* units = "";
};
mdt_unit mdt_unit_of(int code) noexcept;

/// Title and comment behind the samples of an old frame; texts that do not fit are left out.
struct mdt_texts {
    std::string title;
    std::map<std::string, std::string> strings;
};
mdt_texts read_mdt_texts(source& file, const mdt_frame& frame, std::uint64_t offset);

/// A title such as "1F:Height" or "2B:Mag" taken apart; the whole of other titles is the channel.
struct mdt_title {
    std::string channel;
    std::string pass; ///< "1"
    scan_direction direction = scan_direction::unknown;
};
mdt_title split_mdt_title(const std::string& title);

/// Gives a plane channel, pass and direction by its title, `otherwise` without one, and keeps what it took off.
void name_plane(mdt_plane& plane, const std::string& title, const std::string& otherwise);

} // namespace vldv::formats
