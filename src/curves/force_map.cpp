#include "curves/force_map.h"

#include "base/rounding.h"
#include "curves/force_curve.h"
#include "curves/force_packs.h"
#include "curves/physical.h"
#include "primitives/line_fit.h"
#include "primitives/range.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>
#include <thread>

namespace curves {

namespace {

/// Rounded, halves up, and cut to the lowest 16 bits; what is no number of 63 bits becomes 0.
std::int16_t wrapped(double value) noexcept
{
    const double whole = base::round_half_up(value);
    if (!(std::fabs(whole) < 9e18)) return 0;
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(static_cast<std::int64_t>(whole)));
}

/// So close to where rounding turns that the last digits of another order of the sums could turn it.
/// \param raw   the largest values that were summed, in raw steps
/// \param step  what a raw step means in the result
bool is_doubtful(double value, double raw, double step) noexcept
{
    const double fraction = value - std::floor(value);
    const double digits = 1e-9 * (1.0 + std::fabs(value)) + 1e-14 * std::fabs(raw * step);
    return !(std::fabs(fraction - 0.5) > digits);
}

/// The analysis of one curve as it is defined.
void map_curve(const force_volume& volume, std::size_t index, force_maps& out)
{
    const auto n = static_cast<std::size_t>(volume.length);
    const std::vector<double> y = physical_values(volume.samples.subspan(index * n, n), volume.values);
    force_curve_stats stats;
    get_force_curve_stats(y.data(), volume.length, 1.0, 1.0, stats);
    out.rigidity[index] = wrapped((stats.slant_b - stats.zero_b) * 1000.0 / volume.position.scale);
    out.adhesion[index] = wrapped(force_minimum(y.data(), stats) / volume.values.scale);
}

struct line {
    double a = 0.0, b = 0.0; ///< a + b * sample
};

/// The line through a stretch of raw samples, in physical units.
line fit_raw(std::span<const std::int16_t> curve, stretch part, const VLAxis& values) noexcept
{
    if (!part.isFound()) return {};
    const int count = part.last - part.first + 1;
    const primitives::row_sums sums =
        primitives::sum_row(curve.subspan(static_cast<std::size_t>(part.first), static_cast<std::size_t>(count)));
    const primitives::fitted_line raw =
        primitives::fit_line(static_cast<double>(sums.sum), static_cast<double>(sums.moment), count);
    return {(raw.offset - raw.slope * part.first) * values.scale + values.start, raw.slope * values.scale};
}

/// The first sample of the smallest value.
int lowest(std::span<const std::int16_t> curve, double scale) noexcept
{
    if (scale == 0.0) return 0;
    const primitives::height_range range = primitives::find_range(curve);
    const auto value = static_cast<std::int16_t>(scale > 0.0 ? range.minimum : range.maximum);
    return static_cast<int>(std::find(curve.begin(), curve.end(), value) - curve.begin());
}

/// Fills the maps, one block of curves after another, on as many threads as call it.
class map_maker {
public:
    map_maker(const force_volume& volume_, force_maps& out_)
        : volume(volume_), out(out_), smoother(volume_.length), doubts(out_.rigidity.size())
    {
    }

    /// Curves that a thread takes at once.
    static constexpr std::size_t blockLength = 8 * packLanes;

    std::size_t curves() const noexcept { return out.rigidity.size(); }
    pack_work makeWork() const { return pack_work(smoother); }

    /// \return false when all are taken
    bool doNext(pack_work& work)
    {
        const std::size_t first = next.fetch_add(blockLength);
        if (first >= curves()) return false;
        const std::size_t end = std::min(first + blockLength, curves());
        for (std::size_t i = first; i < end; i += packLanes) doPack(i, std::min<std::size_t>(packLanes, end - i), work);
        finished += end - first;
        return true;
    }
    std::size_t done() const noexcept { return finished; }

    /// Does once more what must not depend on the order of sums.
    void settleDoubts()
    {
        for (std::size_t i = 0; i < doubts.size(); ++i)
            if (doubts[i]) map_curve(volume, i, out);
    }

private:
    std::span<const std::int16_t> curve(std::size_t index) const noexcept
    {
        const auto n = static_cast<std::size_t>(volume.length);
        return volume.samples.subspan(index * n, n);
    }

    void doPack(std::size_t first, std::size_t count, pack_work& work) noexcept
    {
        pack_source source{{}, volume.values.scale, volume.values.start};
        for (std::size_t lane = 0; lane < packLanes; ++lane)
            source.curves[lane] = curve(first + std::min(lane, count - 1)).data();
        mark_steps(source, {}, work);
        for (std::size_t lane = 0; lane < count; ++lane) {
            const int at = static_cast<int>(lane);
            put(first + lane, find_slant(work.steepOf(at)), find_zero(work.flatOf(at)));
        }
    }

    void put(std::size_t index, stretch slant, stretch zero) noexcept
    {
        const std::span<const std::int16_t> samples = curve(index);
        const line contact = fit_raw(samples, slant, volume.values), free = fit_raw(samples, zero, volume.values);
        const int least = lowest(samples, volume.values.scale);
        const double force = volume.values.at(samples[static_cast<std::size_t>(least)]) - (free.a + free.b * least);
        const double slopeStep = 1000.0 / volume.position.scale, raw = volume.values.start / volume.values.scale;
        const double rigidity = (contact.b - free.b) * slopeStep, adhesion = force / volume.values.scale;
        out.rigidity[index] = wrapped(rigidity);
        out.adhesion[index] = wrapped(adhesion);
        doubts[index] = is_doubtful(rigidity, raw, volume.values.scale * slopeStep) || is_doubtful(adhesion, raw, 1.0);
    }

    const force_volume& volume;
    force_maps& out;
    curve_smoother smoother;
    std::vector<std::uint8_t> doubts; ///< one a curve
    std::atomic<std::size_t> next{0}, finished{0};
};

} // namespace

force_maps map_forces(const force_volume& volume, const map_options& options)
{
    const std::size_t count = volume.length > 0 ? volume.samples.size() / static_cast<std::size_t>(volume.length) : 0;
    force_maps out{std::vector<std::int16_t>(count), std::vector<std::int16_t>(count)};
    if (volume.length < leastPacked || volume.length > mostPacked) {
        for (std::size_t i = 0; i < count; ++i) map_curve(volume, i, out);
        return out;
    }
    map_maker maker(volume, out);
    const std::size_t allowed = options.threads ? options.threads : std::thread::hardware_concurrency();
    const std::size_t wanted = std::clamp<std::size_t>(allowed, 1, count / map_maker::blockLength + 1);
    std::vector<pack_work> works;
    works.reserve(wanted);
    // Before any thread starts: what fails, fails here.
    for (std::size_t i = 0; i < wanted; ++i) works.push_back(maker.makeWork());
    std::vector<std::jthread> helpers;
    for (std::size_t i = 1; i < wanted; ++i)
        helpers.emplace_back([&maker, work = &works[i]] {
            while (maker.doNext(*work)) {}
        });
    while (maker.doNext(works[0]))
        if (options.progress) options.progress(maker.done(), count);
    helpers.clear();
    maker.settleDoubts();
    if (options.progress) options.progress(count, count);
    return out;
}

force_volume volume_of(const SPMDataStream& stream, unsigned sub)
{
    force_volume out;
    bool hasSameUnits = false;
    std::size_t count = 1;
    for (unsigned d = 0; d < 3; ++d) count *= stream.get_dimension(d).length;
    out.samples = {static_cast<const std::int16_t*>(stream.array_data()) + sub * count, count};
    out.length = static_cast<int>(stream.get_dimension(0).length);
    if (stream.get_dimension(0).get_axes_number() > 0) out.position = stream.get_dimension(0).get_axis(0);
    for (unsigned i = stream.values.get_axes_number(); i-- > 0;) {
        const VLAxis& axis = stream.values.get_axis(i);
        if (!std::strcmp(axis.get_units(), out.position.get_units())) out.values = axis, hasSameUnits = true;
    }
    if (!hasSameUnits && stream.values.get_axes_number() > 0) out.values = stream.values.get_axis(0);
    return out;
}

SPMDataStream map_stream(const SPMDataStream& source, std::span<const std::int16_t> map, const char* name,
                         const char* label, const VLAxis& values)
{
    SPMDataStream out;
    const auto count = static_cast<unsigned>(map.size());
    out.Init(name, label, SPM_VAR_ARRAY, count, static_cast<unsigned>(sizeof(std::int16_t)));
    out.set_array_type(SPM_ARRAY_INT16);
    out.set_array(map.data(), count, 0);
    out.set_dimension(0, source.get_dimension(1));
    out.set_dimension(1, source.get_dimension(2));
    out.values.set_axis(0, values);
    return out;
}

} // namespace curves
