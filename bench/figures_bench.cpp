// Figures of a 4096 x 4096 surface and its picture in a window, against what their bytes alone cost.
#include "primitives/numeric.h"
#include "primitives/plane_moments.h"
#include "ratio.h"
#include "render_floor.h"
#include "view/Scale.h"

#include <cmath>
#include <cstdlib>
#include <vector>

namespace {

constexpr int side = 4096, pictureWidth = 1000, pictureHeight = 800;

std::vector<std::int16_t> waves_on_a_tilt()
{
    std::vector<std::int16_t> out;
    out.reserve(std::size_t{side} * side);
    std::uint32_t noise = 1;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            noise = noise * 1664525u + 1013904223u;
            const double height = 9000.0 * std::sin(x * 0.011) * std::cos(y * 0.007) + 2.5 * (x - y);
            out.push_back(static_cast<std::int16_t>(height + static_cast<double>(noise >> 22)));
        }
    return out;
}

/// The rows of the surface that a picture of nearest samples reads, and a store for each of its pixels.
std::int64_t window_floor(std::span<const std::int16_t> samples, std::uint32_t* pixels)
{
    std::int64_t mixed = 0;
    for (int y = 0; y < pictureHeight; ++y) {
        const auto row = static_cast<std::size_t>(y) * side / pictureHeight * side;
        mixed ^= bench::read_all(samples.subspan(row, side));
    }
    const auto value = static_cast<std::uint32_t>(mixed);
    std::fill_n(pixels, pictureWidth * pictureHeight, value);
    return mixed;
}

} // namespace

int main()
{
    const std::vector<std::int16_t> samples = waves_on_a_tilt();
    std::vector<std::int16_t> fitted(pictureWidth * pictureHeight);
    std::vector<std::uint32_t> pixels(fitted.size());
    CScale scale;
    scale.SetAutoScaling(view::autoScale);
    const VLAxis heights(0.0, 0.01, "nm");
    volatile std::int64_t kept = 0;
    const auto fit = [&] {
        resample(samples.data(), side, side, 2 * side, fitted.data(), pictureWidth, pictureHeight, 2 * pictureWidth);
    };
    const auto draw = [&] {
        scale.DrawImage(pixels.data(), fitted.data(), 2 * pictureWidth, {pictureWidth, pictureHeight}, heights, true,
                        false, nullptr, true, nullptr, nullptr);
    };

    bench::contest contest;
    contest.add("read every sample", [&] { kept = bench::read_all(samples); });
    contest.add("fit a plane", [&] { kept = primitives::fit_plane(samples, side).range.maximum; });
    contest.add("statistics", [&] {
        const auto [range, plane] = primitives::fit_plane(samples, side);
        kept = static_cast<std::int64_t>(primitives::residual_moments(samples, side, plane).m2);
    });
    contest.add("read the rows of a window, store its pixels", [&] { kept = window_floor(samples, pixels.data()); });
    contest.add("resample to the window", fit);
    contest.add("render step: resample and draw", [&] {
        fit();
        draw();
    });
    contest.add("render step: draw what is resampled", draw);
    contest.run(25);

    const double pass = contest.best("read every sample");
    const double window = contest.best("read the rows of a window, store its pixels");
    bench::verdict verdict;
    verdict.at_most("statistics / one pass", contest.best("statistics") / pass, 5.0);
    // Means need every sample once, when the window or the data change; then the picture is drawn from what is kept.
    verdict.at_most("render step with new means / (pass + window floor)",
                    contest.best("render step: resample and draw") / (pass + window), 2.0);
    verdict.at_most("repaint from kept means / window floor",
                    contest.best("render step: draw what is resampled") / window, 1.5);
    return verdict.exit_status();
}
