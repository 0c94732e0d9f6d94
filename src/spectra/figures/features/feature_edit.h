#pragma once
#include "base/VLAxis.h"
#include "primitives/resample/resample.h"
#include "spectra/figures/features/feature.h"

#include <optional>
#include <span>
#include <string>

/// What is done to an image by its features. Features must lie inside the block of heights, which is the whole image.
namespace vldv::spectra {

/// Every pixel gets the level.
void flatten_feature(primitives::height_block image, const Feature& feature, short level);

/// The holes of features, what their pixels enclose (a way over a corner between two pixels is closed), get the mean of
/// the heights in the feature's box, halves up. All means are those of the image before any hole is filled, and where
/// holes lie in one another the outer one counts, so that the order of the features does not matter.
/// \throws std::bad_alloc with the image as it was
void fill_inner_areas(primitives::height_block image, std::span<const Feature* const> features);

/// The mean over the rows of the box of the highest sample of each, of rows that rise above the threshold; nothing
/// where none does.
[[nodiscard]] std::optional<double> profile_height(primitives::const_height_block image, const Feature& feature,
                                                   short threshold);
/// The mean of that over features that have one.
[[nodiscard]] std::optional<double> average_profile_height(primitives::const_height_block image,
                                                           std::span<const Feature* const> features, short threshold);
/// "<H>, nm: 12.5": an average of raw heights above the zero level.
[[nodiscard]] std::string profile_height_text(double average, short zeroLevel, const VLAxis& heights);

} // namespace vldv::spectra
