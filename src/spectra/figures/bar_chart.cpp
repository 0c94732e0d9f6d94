#include "spectra/figures/bar_chart.h"

#include "base/streams/rounding.h"

#include <algorithm>
#include <cmath>

namespace vldv::spectra {

double count_scale::share(std::uint32_t count) const noexcept
{
    if (peak == 0) return 0.0;
    return isLogarithmic ? std::log1p(count) / std::log1p(peak) : static_cast<double>(count) / peak;
}

int count_scale::rows(std::uint32_t count, int height) const noexcept
{
    return base::nearest_int(share(count) * (height - 1));
}

std::vector<CPoint> bar_tops(const height_histogram& histogram, CSize pane, const count_scale& scale,
                             const platform::shown_part& part)
{
    std::vector<CPoint> tops;
    const auto bars = static_cast<std::int64_t>(histogram.bins.size());
    if (bars == 0 || pane.cx < 1 || pane.cy < 1) return tops;
    const auto add = [&](int column, std::int64_t bin) {
        const std::uint32_t count = histogram.bins[static_cast<std::size_t>(bin)];
        tops.push_back({column, pane.cy - 1 - scale.rows(count, pane.cy)});
    };
    if (static_cast<double>(bars) * part.width() < pane.cx) {
        for (int x = 0; x < pane.cx; ++x) {
            const std::int64_t bin =
                part.isWhole() ? bars * x / pane.cx : bin_at(histogram, part.fromPane(double{1.0} * x / pane.cx));
            add(x, bin);
        }
        return tops;
    }
    const double last = std::max(static_cast<double>(bars) - 1.0, 1.0);
    for (std::int64_t bin = 0; bin < bars; ++bin) {
        const int x = base::nearest_int(part.toPane(static_cast<double>(bin) / last) * (pane.cx - 1));
        if (x >= 0 && x < pane.cx) add(x, bin);
    }
    return tops;
}

std::vector<CPoint> cumulative_line(const height_histogram& histogram, CSize pane, const platform::shown_part& part)
{
    std::vector<CPoint> line;
    if (histogram.totalCount == 0) return line;
    const auto bars = static_cast<double>(histogram.bins.size());
    const auto place = [&](double share, double up) {
        return CPoint{base::nearest_int(part.toPane(share) * (pane.cx - 1)),
                      pane.cy - 1 - base::nearest_int(up * (pane.cy - 1))};
    };
    line.push_back(place(0.0, 0.0));
    double below = 0.0;
    for (std::size_t bin = 0; bin < histogram.bins.size(); ++bin) {
        below += histogram.bins[bin];
        const CPoint next = place((static_cast<double>(bin) + 1.0) / bars, below / histogram.totalCount);
        if (next != line.back()) line.push_back(next);
    }
    return line;
}

} // namespace vldv::spectra
