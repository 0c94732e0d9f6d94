#include "spectra/figures/feature_search.h"

#include "spectra/figures/feature_brush.h"
#include "spectra/figures/measured_block.h"

#include <algorithm>
#include <thread>

namespace vldv::spectra {

namespace {

unsigned threads() { return std::max(std::thread::hardware_concurrency(), 1u); }

} // namespace

void feature_search::find(const searched_image& image, const CRect& working_, std::optional<double> level)
{
    clear();
    if (!rect.IntersectRect(working_, CRect(0, 0, image.heights.width, image.heights.height))) return;
    const measured_block block(image.heights, rect, image.unmeasured);
    missing = block.leftOut();
    found = find_levels(block.measured(), level);
    list = feature_list::above(found.threshold, {block.heights(), rect.TopLeft(), image.axes, found.zeroLevel}, bits,
                               threads());
}

void feature_search::measureMask(const searched_image& image)
{
    const measured_block block(image.heights, rect, image.unmeasured);
    list = feature_list::ofMask(bits, {block.heights(), rect.TopLeft(), image.axes, found.zeroLevel}, threads());
}

void feature_search::paint(int radius, CPoint from, CPoint to, bool value)
{
    const CSize origin{rect.left, rect.top};
    feature_brush(radius).stamp(bits, from - origin, to - origin, value);
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
