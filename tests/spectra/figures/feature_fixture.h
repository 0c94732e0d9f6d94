#pragma once
#include "primitives/map/bit_image.h"
#include "spectra/figures/features/feature_list.h"

#include <cmath>
#include <string>
#include <vector>

/// Heights row by row from the lowest.
struct surface {
    int width, height;
    std::vector<short> samples;

    surface(int width_, int height_, short level = 0)
        : width(width_), height(height_), samples(static_cast<std::size_t>(width_ * height_), level)
    {
    }
    /// From a picture whose first row is the highest; "#" is 10.
    explicit surface(const std::vector<std::string>& rows)
        : surface(static_cast<int>(rows[0].size()), static_cast<int>(rows.size()))
    {
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                if (rows[static_cast<std::size_t>(height - 1 - y)][static_cast<std::size_t>(x)] == '#') at(x, y) = 10;
    }
    short& at(int x, int y) { return samples[static_cast<std::size_t>(y * width + x)]; }
    primitives::height_block block() { return {samples.data(), width, height, width * 2}; }
    primitives::const_height_block heights() const { return {samples.data(), width, height, width * 2}; }

    /// A sphere of radius R, of which the part above `cut` below its top shows.
    void addCap(double cx, double cy, double radius, double cut)
    {
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const double r2 = (x - cx) * (x - cx) + (y - cy) * (y - cy);
                const double z = r2 < radius * radius ? std::sqrt(radius * radius - r2) - (radius - cut) : 0.0;
                if (z > 0.0) at(x, y) = static_cast<short>(std::lround(z * 100.0));
            }
    }
};

inline spectra::feature_source source_of(const surface& of)
{
    return {of.heights(), {0, 0}, {VLAxis(0, 1, "nm"), VLAxis(0, 1, "nm"), VLAxis(0, 0.01, "nm")}, 0};
}

inline spectra::feature_list features_of(const surface& of, short threshold = 0, unsigned threads = 1)
{
    primitives::bit_image mask;
    return spectra::feature_list::above(threshold, source_of(of), mask, threads);
}
