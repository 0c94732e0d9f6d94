#include "spectra/figures/features/feature_search.h"

#include "base/streams/rounding.h"
#include "primitives/map/threshold.h"
#include "spectra/figures/features/feature_brush.h"
#include "spectra/figures/features/watershed.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace vldv::spectra {

namespace {

unsigned threads() { return std::max(std::thread::hardware_concurrency(), 1u); }

int highest_of(primitives::const_height_block heights)
{
    int highest = -32768;
    for (int y = 0; y < heights.height; ++y)
        highest = std::max<int>(highest,
                                primitives::sum_run({heights.row(y), static_cast<std::size_t>(heights.width)}).highest);
    return highest;
}

} // namespace

found_features find_features(const measured_block& block, CPoint origin, const feature_axes& axes,
                             const threshold_choice& choice)
{
    found_features made;
    made.levels = find_levels(block.measured(), choice);
    const feature_source source{block.heights(), origin, axes, made.levels.zeroLevel};
    made.list = feature_list::above(made.levels.threshold, source, made.mask, threads());
    if (choice.mode == threshold_mode::watershed) {
        const int rise = highest_of(block.measured()) - made.levels.threshold;
        part_by_watershed(block.heights(), made.mask, base::nearest_int(choice.depth * rise));
        made.list = feature_list::ofMask(made.mask, source, threads());
    }
    return made;
}

void feature_search::find(const searched_image& image, const CRect& working_, const threshold_choice& choice)
{
    clear();
    if (!rect.IntersectRect(working_, CRect(0, 0, image.heights.width, image.heights.height))) return;
    const measured_block block(image.heights, rect, image.unmeasured);
    missing = block.leftOut();
    found_features made = find_features(block, rect.TopLeft(), image.axes, choice);
    found = made.levels;
    bits = std::move(made.mask);
    list = std::move(made.list);
}

void feature_search::measureMask(const searched_image& image)
{
    const measured_block block(image.heights, rect, image.unmeasured);
    list = feature_list::ofMask(bits, {block.heights(), rect.TopLeft(), image.axes, found.zeroLevel}, threads());
}

CRect feature_search::paint(int radius, CPoint from, CPoint to, bool value)
{
    const CSize origin{rect.left, rect.top};
    feature_brush(radius).stamp(bits, from - origin, to - origin, value);
    const int reach = std::max(radius, 0);
    CRect covered;
    covered.IntersectRect(rect, CRect(std::min(from.x, to.x) - reach, std::min(from.y, to.y) - reach,
                                      std::max(from.x, to.x) + reach + 1, std::max(from.y, to.y) + reach + 1));
    return covered;
}

void feature_search::remove(const std::function<bool(const Feature&)>& goes)
{
    std::erase_if(list.features, [&](const Feature& each) {
        if (!goes(each)) return false;
        for (const CPoint& at : each.pixels) {
            const CSize in = at - rect.TopLeft();
            bits.fill(in.cy, in.cx, in.cx + 1, false);
        }
        return true;
    });
}

bool feature_search::isOnBorder(const Feature& feature) const noexcept
{
    const CRect& box = feature.bounds;
    return box.left <= rect.left || box.top <= rect.top || box.right >= rect.right || box.bottom >= rect.bottom;
}

std::optional<std::size_t> feature_search::featureAt(CPoint point) const noexcept
{
    const auto holds = [&](const Feature& each) { return each.bounds.PtInRect(point) && each.pixels.contains(point); };
    const auto place = std::ranges::find_if(list.features, holds);
    if (place == list.features.end()) return std::nullopt;
    return static_cast<std::size_t>(place - list.features.begin());
}

} // namespace vldv::spectra
