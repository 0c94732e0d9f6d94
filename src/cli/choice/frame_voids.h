#pragma once
#include "cli/choice/frame_choice.h"
#include "document/samples/unmeasured_samples.h"

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace vldv::cli {

/// What of a sub-image was not measured.
struct frame_voids {
    std::vector<primitives::sample_run> runs; ///< in rising order
    std::size_t leftOut = 0;                  ///< samples of a figure that were left out of it
    std::size_t included = 0; ///< samples that went in: of those of the whole image no text tells which they are
};
/// All of a sub-image, as figures leave them out.
frame_voids voids_of(const CStorageDoc& document, const frame& which);
/// As for figures that cannot leave any out.
frame_voids all_included(frame_voids voids);

/// Adds "not_measured" and "not_measured_included".
void add_voids(nlohmann::ordered_json& entry, const frame_voids& voids);
/// A line for each number that is not 0, after four blanks.
std::string voids_text(const frame_voids& voids);

} // namespace vldv::cli
