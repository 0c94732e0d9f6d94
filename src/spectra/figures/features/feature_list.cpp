#include "spectra/figures/features/feature_list.h"

#include "primitives/mask/boundary.h"
#include "primitives/mask/mask_position.h"
#include "primitives/mask/thinning.h"
#include "primitives/parallel.h"

#include <bit>

namespace vldv::spectra {

namespace {

using primitives::bit_strips;
using primitives::connected_runs;

/// Works out one feature after another; what it needs for that is kept from one to the next.
class feature_drawer {
public:
    feature_drawer(const connected_runs& found_, const feature_source& source_)
        : found(found_), source(source_), steps(steps_of(source_.axes))
    {
    }

    Feature draw(const connected_runs::area& area)
    {
        corner = {area.left - 1, area.top - 1}; // a border of clear samples around the box
        mask.assign(area.right - area.left + 2, area.bottom - area.top + 2);
        forEachRun(area, [this](int y, int left, int right) { mask.set(y, left, right); });
        const connected_runs::run& first = found.runs()[area.firstRun];
        Feature feature;
        feature.bounds = CRect(area.left, area.top, area.right, area.bottom);
        feature.bounds.OffsetRect(source.origin.x, source.origin.y);
        feature.pixels = pixel_list(found.runs(), area.firstRun, area.pixels, source.origin);
        trace({first.left - corner.x, first.row - corner.y});
        feature.contour = line;
        const double contourLength = length();
        thin(area);
        collectSkeleton(feature.skeleton);
        trace(feature.skeleton.front() - offset());
        const feature_figures figures{area.pixels, area.heights, contourLength, length(), polygon_area(feature.contour),
                                      steps.area()};
        for (std::size_t i = 0; i < featureMetrics; ++i)
            feature.metrics[i] = feature_metrics()[i].value(figures, source.axes, source.zeroLevel);
        return feature;
    }

private:
    CSize offset() const noexcept { return {corner.x + source.origin.x, corner.y + source.origin.y}; }
    double length() const noexcept { return tracing_length(line, steps.x, steps.y); }
    /// The runs of the area as they lie in the mask.
    template <class Use>
    void forEachRun(const connected_runs::area& area, Use use) const
    {
        for (std::uint32_t i = area.firstRun; i != connected_runs::none; i = found.runs()[i].next) {
            const connected_runs::run& run = found.runs()[i];
            use(run.row - corner.y, run.left - corner.x, run.right - corner.x);
        }
    }
    void trace(CPoint start)
    {
        line.clear();
        primitives::walk_outline(
            start.x, start.y, [this](int x, int y) { return mask.neighbours(x, y); },
            [this](int x, int y) { line.push_back(CPoint{x, y} + offset()); });
    }
    /// Thinning takes sides in turn, so that what is left depends on how the mask lies: it is done in the standard
    /// position, and a mirrored or turned image has the mirrored or turned skeletons. The skeleton of an area that is
    /// equal to itself with rows and columns exchanged lies towards the shorter step, also when both change places.
    void thin(const connected_runs::area& area)
    {
        if (mask.height() >= mask.width()) {
            upright.assign(mask.height(), mask.width());
            forEachRun(area, [this](int y, int left, int right) { upright.setUpright(y, left, right); });
        }
        const primitives::mask_position position = primitives::standard_position(mask, upright, steps.y < steps.x);
        primitives::lay_mask(mask, upright, position, laid);
        thinner.thin(laid);
        mask.assign(mask.width(), mask.height());
        forEachSet(laid, [&](int laidX, int laidY) {
            const auto [x, y] = position.source(laid, laidX, laidY);
            mask.set(y, x, x + 1);
        });
    }
    void collectSkeleton(std::vector<CPoint>& points) const
    {
        forEachSet(mask, [&](int x, int y) { points.push_back(CPoint{x, y} + offset()); });
    }
    /// Row by row.
    template <class Use>
    static void forEachSet(const bit_strips& of, Use use)
    {
        for (int y = 0; y < of.height(); ++y)
            for (int s = 0; s < of.strips(); ++s)
                for (std::uint64_t left = of.strip(s)[y]; left != 0; left &= left - 1)
                    use(s * primitives::bitsOfWord + std::countr_zero(left), y);
    }

    const connected_runs& found;
    const feature_source& source;
    const feature_steps steps;
    bit_strips mask, upright, laid;
    primitives::thinner thinner;
    CPoint corner;
    std::vector<CPoint> line;
};

} // namespace

feature_list feature_list::ofMask(const primitives::bit_image& mask, const feature_source& source, unsigned threads)
{
    feature_list list;
    list.found->find(mask, source.heights);
    list.measure(source, threads);
    return list;
}

feature_list feature_list::above(short threshold, const feature_source& source, primitives::bit_image& mask,
                                 unsigned threads)
{
    feature_list list;
    list.found->findAbove(source.heights, threshold, mask);
    list.measure(source, threads);
    return list;
}

void feature_list::measure(const feature_source& source, unsigned threads)
{
    std::vector<std::uint32_t> large;
    for (std::uint32_t i = 0; i < found->areas().size(); ++i)
        if (found->areas()[i].pixels > 1) large.push_back(i);
    dropped = found->areas().size() - large.size();
    features.resize(large.size());
    constexpr std::size_t together = 64;
    primitives::parallel_blocks(large.size(), together, threads, [&] {
        return [&, drawer = feature_drawer(*found, source)](std::size_t first, std::size_t end) mutable {
            for (std::size_t i = first; i < end; ++i) features[i] = drawer.draw(found->areas()[large[i]]);
        };
    });
}

} // namespace vldv::spectra
