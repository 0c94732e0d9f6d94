#include "spectra/figures/features/feature_edit.h"

#include "base/streams/rounding.h"
#include "base/text.h"
#include "primitives/map/range.h"

#include <algorithm>

namespace vldv::spectra {

namespace {

/// The samples of a row of the box.
std::span<const std::int16_t> box_row(primitives::const_height_block image, const CRect& box, int y)
{
    return {image.row(y) + box.left, static_cast<std::size_t>(box.Width())};
}

short box_mean(primitives::const_height_block image, const CRect& box)
{
    std::int64_t sum = 0;
    for (int y = box.top; y < box.bottom; ++y) sum += primitives::sum_run(box_row(image, box, y)).sum;
    const double count = static_cast<double>(box.Width()) * box.Height();
    return static_cast<short>(base::round_half_up(static_cast<double>(sum) / count));
}

} // namespace

void flatten_feature(primitives::height_block image, const Feature& feature, short level)
{
    feature.pixels.forEachRun(
        [&](int y, int left, int right) { std::fill(image.row(y) + left, image.row(y) + right, level); });
}

namespace {

/// A run of samples in a hole, with what it gets and the size of the box of the feature around it.
struct hole_run {
    int y, left, right;
    short mean;
    std::int64_t boxSize;
};

/// Finds the holes of one feature after another.
class hole_finder {
public:
    explicit hole_finder(primitives::const_height_block image_) : image(image_) {}

    void add(const Feature& feature, std::vector<hole_run>& runs)
    {
        // All that is no pixel, with a border around the box: the first area that a scan meets is the outside.
        const CRect& box = feature.bounds;
        const CSize offset{box.left - 1, box.top - 1};
        others.assign(box.Width() + 2, box.Height() + 2);
        for (int y = 0; y < others.height(); ++y) others.fill(y, 0, others.width(), true);
        feature.pixels.forEachRun([&](int y, int left, int right) {
            others.fill(y - offset.cy, left - offset.cx, right - offset.cx, false);
        });
        // The feature hangs together over corners, so that what is around it may do so over sides alone: otherwise a
        // hole would leak through a corner of its rim.
        found.find(others, {}, primitives::neighbours::overSides);
        if (found.areas().size() < 2) return;
        const short mean = box_mean(image, box);
        const std::int64_t boxSize = std::int64_t{box.Width()} * box.Height();
        for (std::size_t hole = 1; hole < found.areas().size(); ++hole)
            for (std::uint32_t i = found.areas()[hole].firstRun; i != primitives::connected_runs::none;
                 i = found.runs()[i].next) {
                const primitives::connected_runs::run& run = found.runs()[i];
                runs.push_back({run.row + offset.cy, run.left + offset.cx, run.right + offset.cx, mean, boxSize});
            }
    }

private:
    primitives::const_height_block image;
    primitives::bit_image others;
    primitives::connected_runs found;
};

} // namespace

void fill_inner_areas(primitives::height_block image, std::span<const Feature* const> features)
{
    hole_finder finder({image.data, image.width, image.height, image.step});
    std::vector<hole_run> runs;
    for (const Feature* const feature : features) finder.add(*feature, runs);
    // What encloses another has the larger box: it comes last.
    std::ranges::sort(runs, {}, &hole_run::boxSize);
    for (const hole_run& run : runs) std::fill(image.row(run.y) + run.left, image.row(run.y) + run.right, run.mean);
}

std::optional<double> profile_height(primitives::const_height_block image, const Feature& feature, short threshold)
{
    double sum = 0.0;
    int rows = 0;
    for (int y = feature.bounds.top; y < feature.bounds.bottom; ++y) {
        const std::int16_t highest = primitives::find_range(box_row(image, feature.bounds, y)).maximum;
        if (highest <= threshold) continue;
        sum += highest;
        ++rows;
    }
    return rows > 0 ? std::optional(sum / rows) : std::nullopt;
}

std::optional<double> average_profile_height(primitives::const_height_block image,
                                             std::span<const Feature* const> features, short threshold)
{
    double sum = 0.0;
    std::size_t count = 0;
    for (const Feature* const feature : features)
        if (const auto height = profile_height(image, *feature, threshold)) {
            sum += *height;
            ++count;
        }
    return count > 0 ? std::optional(sum / static_cast<double>(count)) : std::nullopt;
}

std::string profile_height_text(double average, short zeroLevel, const VLAxis& heights)
{
    return std::string("<H>, ") + heights.get_units() + ": " + base::general((average - zeroLevel) * heights.scale);
}

} // namespace vldv::spectra
