#include "spectra/figures/spectrum_curves.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace vldv::spectra {

namespace {

/// A curve over cycles per unit. \param values  as the spectrum has them, raw
SPMDataStream make_curve(const spectrum_curve_source& source, const char* name, const VLAxis& frequencies,
                         std::vector<double> values)
{
    const bool isPower = source.mode == spectrum_mode::power;
    const double step = std::fabs(source.heights.scale);
    for (double& each : values) each *= isPower ? step * step : step;
    SPMDataStream curve;
    curve.Init(name, name, SPM_VAR_ARRAY, static_cast<unsigned>(values.size()), 8u);
    curve.set_array_type(SPM_ARRAY_FLOAT64);
    std::ranges::copy(values, static_cast<double*>(curve.array_data()));
    SPMDataStream::dimension along;
    along.length = static_cast<unsigned>(values.size());
    along.set_axis(0, frequencies);
    curve.set_dimension(0, along);
    const std::string unit = source.heights.get_units();
    curve.values.set_axis(0, VLAxis(0.0, 1.0, (isPower && !unit.empty() ? unit + "^2" : unit).c_str()));
    return curve;
}

std::string per(const std::string& unit) { return unit.empty() ? unit : "1/" + unit; }

/// Between four bins; what lies beyond the spectrum counts as 0.
double between_bins(shown_spectrum& spectrum, double u, double v)
{
    const int left = static_cast<int>(std::floor(u)), low = static_cast<int>(std::floor(v));
    const double x = u - left, y = v - low;
    const auto at = [&](int dx, int dy, double share) {
        return share == 0.0 ? 0.0 : share * double(spectrum.at({left + dx, low + dy}));
    };
    return at(0, 0, (1.0 - x) * (1.0 - y)) + at(1, 0, x * (1.0 - y)) + at(0, 1, (1.0 - x) * y) + at(1, 1, x * y);
}

/// The last bin that both the spectrum and its mirror image have.
int last_bin(int length) noexcept { return (length - 1) / 2; }

} // namespace

std::optional<SPMDataStream> radial_spectrum(const spectrum_curve_source& source)
{
    const wave x = wave_at(source.grid, 1, 0), y = wave_at(source.grid, 0, 1);
    if (!x.hasLength()) return std::nullopt;
    const double stepX = std::fabs(x.fx), stepY = std::fabs(y.fy);
    const int lastX = last_bin(source.grid.width), lastY = last_bin(source.grid.height);
    if (lastX < 1 || lastY < 1 || stepX == 0.0 || stepY == 0.0) return std::nullopt;
    const double step = std::min(stepX, stepY);
    const auto rings = static_cast<std::size_t>(std::min(lastX * stepX, lastY * stepY) / step + 0.5) + 1;
    std::vector<double> sums(rings), counts(rings);
    for (int v = -lastY; v <= lastY; ++v)
        for (int u = -lastX; u <= lastX; ++u) {
            const auto ring = static_cast<std::size_t>(std::hypot(u * stepX, v * stepY) / step + 0.5);
            if (ring >= rings) continue;
            sums[ring] += source.spectrum.at({u, v});
            counts[ring] += 1.0;
        }
    for (std::size_t i = 0; i < rings; ++i) sums[i] /= std::max(counts[i], 1.0);
    return make_curve(source, "Radial spectrum", VLAxis(0.0, step, per(x.unitX).c_str()), std::move(sums));
}

std::optional<SPMDataStream> origin_profile(const spectrum_curve_source& source, CPoint through)
{
    const int far = std::max(std::abs(through.x), std::abs(through.y));
    if (far == 0) return std::nullopt;
    const double du = double(through.x) / far, dv = double(through.y) / far;
    const wave each = wave_at(source.grid, du, dv);
    if (!each.hasLength() && du != 0.0 && dv != 0.0) return std::nullopt;
    const int lastX = last_bin(source.grid.width), lastY = last_bin(source.grid.height);
    int count = 0; // steps to each side
    while (std::fabs((count + 1) * du) <= lastX && std::fabs((count + 1) * dv) <= lastY) ++count;
    if (count == 0) return std::nullopt;
    std::vector<double> values;
    for (int i = -count; i <= count; ++i) values.push_back(between_bins(source.spectrum, i * du, i * dv));
    const double step = each.hasLength() ? each.frequency() : std::fabs(du != 0.0 ? each.fx : each.fy);
    const std::string& unit = du != 0.0 ? each.unitX : each.unitY;
    return make_curve(source, "Profile of the spectrum", VLAxis(-count * step, step, per(unit).c_str()),
                      std::move(values));
}

} // namespace vldv::spectra
