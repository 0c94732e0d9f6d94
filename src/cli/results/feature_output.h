#pragma once
#include "cli/choice/frame_voids.h"
#include "platform/draw/geometry.h"
#include "spectra/figures/features/feature_levels.h"
#include "spectra/figures/features/feature_list.h"

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace vldv::cli {

/// The features of a frame, as every output tells them.
struct frame_features {
    CRect working; ///< rectangle of the frame that was looked at
    spectra::feature_axes axes;
    spectra::feature_levels levels;
    spectra::feature_list list;
    frame_voids voids;
};

/// "threshold", "zero_level", "metrics", "features", "dropped" and what was not measured.
nlohmann::ordered_json features_json(const frame_features& made);
/// A table with a feature a line, in columns: lengths in one unit in which the longest reads well, and heights in one
/// in which the highest rise reads well, with as many digits as tell them apart.
std::string features_text(const frame_features& made);
/// The features for a spreadsheet: comma-separated values, names in the first line.
std::string features_csv(const frame_features& made);
/// A picture of the rectangle with the features white on black, the lowest row at the bottom, as a PNG file.
/// \throws std::runtime_error with the reason
std::vector<std::byte> features_png(const frame_features& made);

} // namespace vldv::cli
