#include "curves/figures/display/spectrum_display.h"

#include "base/streams/rounding.h"
#include "base/text.h"
#include "base/units.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace vldv::curves {

namespace {

/// A point for each bin. \param rowOf  the row of a bin over the pane's lower edge
template <class RowOf>
std::vector<CPoint> bin_points(std::size_t bins, std::uint32_t samples, CSize size, CPoint origin, RowOf rowOf)
{
    const double halfLength = samples / 2;
    const double binsPerColumn = size.cx > 1 && halfLength > 0.0 ? halfLength / (size.cx - 1) : 1.0;
    std::vector<CPoint> points;
    for (std::size_t i = 0; i < bins; ++i)
        points.push_back(
            {origin.x + base::nearest_int(static_cast<double>(i) / binsPerColumn), origin.y + size.cy - rowOf(i) - 1});
    return points;
}

} // namespace

std::vector<CPoint> spectrum_points(const curve_spectrum& spectrum, std::uint32_t samples, CSize size, CPoint origin)
{
    const auto rowOf = [&](std::size_t bin) {
        return static_cast<int>(std::rint(static_cast<float>(size.cy) * spectrum.values[bin] / spectrum.max));
    };
    return bin_points(spectrum.values.size(), samples, size, origin, rowOf);
}

std::vector<CPoint> phase_points(const curve_spectrum& spectrum, std::uint32_t samples, CSize size, CPoint origin)
{
    constexpr double pi = std::numbers::pi;
    const auto rowOf = [&](std::size_t bin) {
        return base::nearest_int((spectrum.phase[bin] + pi) * size.cy / pi * 0.5);
    };
    return bin_points(spectrum.phase.size(), samples, size, origin, rowOf);
}

spectrum_place spectrum_at(const curve_spectrum& spectrum, double bin)
{
    if (spectrum.values.empty()) return {};
    const double at = std::clamp(bin, 0.0, static_cast<double>(spectrum.values.size() - 1));
    const auto below = static_cast<std::size_t>(std::floor(at)), above = static_cast<std::size_t>(std::ceil(at));
    const double part = at - std::floor(at);
    const auto between = [&](const std::vector<float>& of) { return of[below] + (of[above] - of[below]) * part; };
    return {between(spectrum.values), between(spectrum.phase)};
}

std::string spectrum_text(const curve_spectrum& spectrum, double bin, std::uint32_t samples, const VLAxis& positions,
                          const VLAxis& values, const spectrum_text_style& style)
{
    std::string text;
    if (style.rate) {
        text = base::formatted("X: %G Hz", *style.rate / samples * 2.0 * bin);
    } else if (bin == 0.0) {
        text = "X: 0 (DC)";
    } else {
        double wavelength = samples * std::fabs(positions.scale) / bin;
        const char* const units = default_units(positions.get_units(), &wavelength);
        text = base::formatted("X: %G %s", wavelength, units);
    }
    const auto [value, phase] = spectrum_at(spectrum, bin);
    text += base::formatted("\tS: %G", style.isNormalized ? value / spectrum.max : value);
    if (!style.isNormalized) text += base::formatted(" %s%s", values.get_units(), style.isPower ? "^2" : "");
    return text + base::formatted("\tPhase: %G", phase * 180.0 / std::numbers::pi);
}

} // namespace vldv::curves
