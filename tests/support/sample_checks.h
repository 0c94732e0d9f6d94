#pragma once
#include "formats/recording.h"
#include "support/manifest.h"

#include <string>
#include <vector>

namespace test_support {

/// One frame of an image of a recording.
struct image_plane {
    const formats::recorded_image* image = nullptr;
    unsigned subimage = 0;

    unsigned width() const;
    unsigned height() const;
    /// Physical value of a sample in base units (m, V, °); row 0 is the bottom row.
    double at(unsigned column, unsigned row) const;
    /// Base units of one raw step.
    double step() const;
};

/// All frames of all images, in order.
std::vector<image_plane> planes_of(const formats::recording& recording);

/// What a number in `units` is multiplied with to be in base units: 1e-9 for "nm". 1 for units without SI prefix.
double base_unit_factor(const std::string& units);
/// The units without their SI prefix; "deg" for the degree sign.
std::string base_unit(const std::string& units);

/// Compares dimensions, sizes, units, range, mean and corners with a manifest row of kind "image". Heights may differ
/// by 1e-5 of the range and, where the reader fitted them onto 16 bits, by half a step.
void expect_plane(const manifest_row& row, const image_plane& plane, bool isFitted);

} // namespace test_support
