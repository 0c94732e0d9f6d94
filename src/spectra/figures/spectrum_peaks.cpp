#include "spectra/figures/spectrum_peaks.h"

#include "base/streams/axis_units.h"
#include "base/text.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <iterator>
#include <numbers>
#include <tuple>
#include <utility>

namespace vldv::spectra {

namespace {

using complex = std::complex<double>;

/// The bins of the whole spectrum, out of its packed half.
class full_spectrum {
public:
    explicit full_spectrum(const frame_spectrum& spectrum_) : spectrum(spectrum_) {}

    complex at(int u, int v) const
    {
        const int width = spectrum.width, height = spectrum.height;
        const int column = (u % width + width) % width, row = (v % height + height) % height;
        if (2 * column > width) return std::conj(stored(width - column, (height - row) % height));
        return stored(column, row);
    }

    /// Behind a Hann window in both directions.
    complex windowed(int u, int v) const
    {
        complex sum = 0.0;
        for (int dv = -1; dv <= 1; ++dv)
            for (int du = -1; du <= 1; ++du) sum += weight(du) * weight(dv) * at(u + du, v + dv);
        return sum;
    }

private:
    static double weight(int distance) noexcept { return distance == 0 ? 0.5 : -0.25; }
    float number(int x, int y) const
    {
        return spectrum.packed[std::size_t(y) * std::size_t(spectrum.width) + std::size_t(x)];
    }
    /// \param column  0 … W / 2
    complex stored(int column, int row) const
    {
        const bool mirrorsItself = column == 0 || 2 * column == spectrum.width;
        if (!mirrorsItself) return {number(2 * column - 1, row), number(2 * column, row)};
        const int x = column == 0 ? 0 : spectrum.width - 1;
        if (row == 0) return number(x, 0);
        const int r = std::min(row, spectrum.height - row);
        if (2 * r == spectrum.height) return number(x, spectrum.height - 1);
        const complex bin{number(x, 2 * r - 1), number(x, 2 * r)};
        return row == r ? bin : std::conj(bin);
    }

    const frame_spectrum& spectrum;
};

/// Half of the bins of a spectrum in centred coordinates: one of each pair of mirror images.
struct half_plane {
    int lastU, lastV;
    std::vector<float> magnitudes; ///< rows -lastV … lastV of columns 0 … lastU

    explicit half_plane(const frame_spectrum& spectrum)
        : lastU((spectrum.width - 1) / 2), lastV((spectrum.height - 1) / 2)
    {
        const full_spectrum bins(spectrum);
        for (int v = -lastV; v <= lastV; ++v)
            for (int u = 0; u <= lastU; ++u) magnitudes.push_back(static_cast<float>(std::abs(bins.at(u, v))));
    }
    float at(int u, int v) const
    {
        if (u < 0) return at(-u, -v);
        if (u > lastU || std::abs(v) > lastV) return 0.0f;
        return magnitudes[std::size_t(v + lastV) * std::size_t(lastU + 1) + std::size_t(u)];
    }
    float median() const
    {
        std::vector<float> sorted = magnitudes;
        const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
        std::nth_element(sorted.begin(), middle, sorted.end());
        return sorted.empty() ? 0.0f : *middle;
    }
    bool isPeak(int u, int v) const
    {
        const float own = at(u, v);
        for (int dv = -1; dv <= 1; ++dv)
            for (int du = -1; du <= 1; ++du) {
                // Of equal neighbours the first one counts.
                const bool isEarlier = dv < 0 || (dv == 0 && du < 0);
                if ((du != 0 || dv != 0) && (at(u + du, v + dv) > own || (isEarlier && at(u + du, v + dv) == own)))
                    return false;
            }
        return true;
    }
};

/// How far from a bin the wave lies, -0.5 to 0.5 bins.
double between(double before, double own, double after)
{
    if (own <= 0.0) return 0.0;
    const double ratio = std::max(before, after) / own;
    const double distance = std::clamp((2.0 * ratio - 1.0) / (ratio + 1.0), 0.0, 0.5);
    return after >= before ? distance : -distance;
}

/// A key to sort by that leaves no two bins equal.
std::tuple<double, int, int> strongest_first(const spectrum_peak& peak)
{
    return {-peak.magnitude, peak.bin.y, peak.bin.x};
}

spectrum_peak refined(const full_spectrum& bins, int u, int v, double magnitude)
{
    const auto around = [&](int du, int dv) { return std::abs(bins.windowed(u + du, v + dv)); };
    const double own = around(0, 0);
    return {u + between(around(-1, 0), own, around(1, 0)),
            v + between(around(0, -1), own, around(0, 1)),
            magnitude,
            {u, v}};
}

} // namespace

std::vector<spectrum_peak> find_peaks(const frame_spectrum& spectrum, std::size_t count)
{
    constexpr double overMedian = 10.0, ofLargest = 0.1;
    constexpr int lowest = 2; // bins from the zero frequency
    const half_plane half(spectrum);
    std::vector<spectrum_peak> found;
    const double least = overMedian * half.median();
    for (int v = -half.lastV; v <= half.lastV; ++v)
        for (int u = 0; u <= half.lastU; ++u) {
            const bool isMirrored = u == 0 && v <= 0;
            if (isMirrored || u * u + v * v < lowest * lowest) continue;
            const float own = half.at(u, v);
            if (own > 0.0f && own >= least && half.isPeak(u, v)) found.push_back({double(u), double(v), own, {u, v}});
        }
    std::ranges::sort(found, {}, strongest_first);
    if (found.empty()) return found;
    const double weakest = ofLargest * found.front().magnitude;
    std::erase_if(found, [&](const spectrum_peak& each) { return each.magnitude < weakest; });
    found.resize(std::min(found.size(), count));
    const full_spectrum bins(spectrum);
    for (spectrum_peak& each : found) each = refined(bins, each.bin.x, each.bin.y, each.magnitude);
    return found;
}

namespace {

struct step {
    double x, y;
    double length() const noexcept { return std::hypot(x, y); }
};

/// Both as short as they get (Gauss's reduction of a lattice in the plane).
void shorten(step& a, step& b)
{
    for (;;) {
        if (b.length() < a.length()) std::swap(a, b);
        const double times = std::round((a.x * b.x + a.y * b.y) / (a.x * a.x + a.y * a.y));
        if (times == 0.0) return;
        const step shorter{b.x - times * a.x, b.y - times * a.y};
        if (!(shorter.length() < b.length())) return;
        b = shorter;
    }
}

} // namespace

namespace {

double bins_away(const spectrum_peak& peak) { return std::hypot(peak.u, peak.v); }

/// How much of the peaks, by their magnitudes, the sums of two of them are.
double explained(std::span<const spectrum_peak> peaks, const spectrum_peak& g1, const spectrum_peak& g2)
{
    constexpr int largest = 3;
    constexpr double reach = 0.75; // bins
    double all = 0.0, near = 0.0;
    for (const spectrum_peak& each : peaks) {
        bool isNear = false;
        for (int m = -largest; m <= largest; ++m)
            for (int n = -largest; n <= largest; ++n)
                isNear = isNear || std::hypot(m * g1.u + n * g2.u - each.u, m * g1.v + n * g2.v - each.v) <= reach;
        all += each.magnitude;
        if (isNear) near += each.magnitude;
    }
    return near / all;
}

lattice lattice_of(const wave& first, const wave& second)
{
    const double area = first.fx * second.fy - first.fy * second.fx;
    step a{second.fy / area, -second.fx / area}, b{-first.fy / area, first.fx / area};
    shorten(a, b);
    const double cosine = std::clamp((a.x * b.x + a.y * b.y) / (a.length() * b.length()), -1.0, 1.0);
    const wave along{a.x, a.y, first.unitX, first.unitY};
    return {a.length(), b.length(), std::acos(cosine) * 180.0 / std::numbers::pi, along.direction(), first.unitX};
}

} // namespace

std::optional<lattice> find_lattice(std::span<const spectrum_peak> peaks, const spectrum_grid& grid)
{
    constexpr double leastPeriods = 4.0, leastShare = 0.9;
    constexpr double leastSine = 0.17; // 10 degrees: less is the same direction, or noise
    std::vector<spectrum_peak> waves;
    std::ranges::copy_if(peaks, std::back_inserter(waves),
                         [](const spectrum_peak& each) { return bins_away(each) >= leastPeriods; });
    const auto waveOf = [&](const spectrum_peak& each) { return wave_at(grid, each.u, each.v); };
    if (waves.empty() || !waveOf(waves.front()).hasLength()) return std::nullopt;
    std::ranges::sort(waves, {}, [&](const spectrum_peak& each) {
        return std::pair(waveOf(each).frequency(), strongest_first(each));
    });
    for (std::size_t j = 1; j < waves.size(); ++j)
        for (std::size_t i = 0; i < j; ++i) {
            const wave first = waveOf(waves[i]), second = waveOf(waves[j]);
            const double area = std::fabs(first.fx * second.fy - first.fy * second.fx);
            if (area > leastSine * first.frequency() * second.frequency() &&
                explained(waves, waves[i], waves[j]) >= leastShare)
                return lattice_of(first, second);
        }
    return std::nullopt;
}

std::string peaks_text(std::span<const spectrum_peak> peaks, const spectrum_grid& grid, const VLAxis& heights)
{
    if (peaks.empty()) return "No wave stands out of the spectrum\r\n";
    const wave first = wave_at(grid, peaks.front().u, peaks.front().v);
    const std::string unit = first.unitX, height = heights.get_units();
    std::string text;
    if (first.hasLength())
        text = "N\tPeriod, " + unit + "\tFrequency, 1/" + unit + "\tDirection, \xC2\xB0\tMagnitude, " + height + "\r\n";
    else
        text = "N\tFx, 1/" + unit + "\tFy, 1/" + first.unitY + "\tMagnitude, " + height + "\r\n";
    for (std::size_t i = 0; i < peaks.size(); ++i) {
        const wave at = wave_at(grid, peaks[i].u, peaks[i].v);
        const double magnitude = peaks[i].magnitude * std::fabs(heights.scale);
        const int number = static_cast<int>(i) + 1;
        text += at.hasLength() ? base::formatted("%d\t%G\t%G\t%.2f\t%G\r\n", number, 1.0 / at.frequency(),
                                                 at.frequency(), at.direction(), magnitude)
                               : base::formatted("%d\t%G\t%G\t%G\r\n", number, at.fx, at.fy, magnitude);
    }
    if (const auto found = find_lattice(peaks, grid))
        text += base::formatted(
            "Lattice: a\t%G %s\r\nb\t%G %s\r\nangle\t%.2f\xC2\xB0\r\ndirection of a\t%.2f\xC2\xB0\r\n", found->a,
            found->units.c_str(), found->b, found->units.c_str(), found->angle, found->directionA);
    return text;
}

} // namespace vldv::spectra
