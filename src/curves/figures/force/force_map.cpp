#include "curves/figures/force/force_map.h"

#include "curves/figures/force/force_analysis.h"
#include "curves/figures/force/force_curve.h"
#include "curves/figures/force/force_packs.h"
#include "curves/figures/force/map_scale.h"
#include "curves/figures/physical.h"
#include "formats/shared/force/curve_lengths.h"
#include "primitives/fit/line_fit.h"
#include "primitives/map/range.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>
#include <exception>
#include <limits>
#include <thread>

namespace vldv::curves {

namespace {

constexpr double missing = std::numeric_limits<double>::quiet_NaN();

/// Numbers of all curves, in the steps that maps have as a rule; NaN where a line is missing.
struct map_numbers {
    std::vector<double> rigidity, adhesion;
    explicit map_numbers(std::size_t count) : rigidity(count, missing), adhesion(count, missing) {}
};

/// The analysis of one curve as it is defined.
void map_curve(const force_volume& volume, std::size_t index, map_numbers& out)
{
    const formats::measured_part part = volume.partOf(index);
    const std::size_t first = index * static_cast<std::size_t>(volume.length) + part.first,
                      held = part.end - part.first;
    out.rigidity[index] = out.adhesion[index] = missing;
    if (held == 0) return;
    const int n = static_cast<int>(held);
    const std::vector<double> y = physical_values(volume.samples.subspan(first, held), volume.values);
    std::vector<double> x;
    double scale = 1.0;
    force_curve_stats stats;
    if (volume.places.empty()) {
        scale = volume.position.scale;
        get_force_curve_stats(y.data(), n, 1.0, 1.0, stats, part.gaps);
    } else {
        x = physical_values(volume.places.subspan(volume.placesOf(index) + part.first, held), volume.position);
        get_parametric_curve_stats(x.data(), y.data(), n, 1.0, 1.0, stats, part.gaps);
    }
    if (stats.hasSlant()) out.rigidity[index] = (stats.slant_b - stats.zero_b) * 1000.0 / scale;
    if (stats.hasZero())
        out.adhesion[index] =
            force_minimum(y.data(), stats, x.empty() ? nullptr : x.data()) / std::fabs(volume.values.scale);
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

/// Finds the numbers, one block of curves after another, on as many threads as call it.
class number_finder {
public:
    number_finder(const force_volume& volume_, map_numbers& out_)
        : volume(volume_), out(out_), smoother(volume_.length), count(volume_.curves())
    {
    }

    /// Curves that a thread takes at once.
    static constexpr std::size_t blockLength = 8 * packLanes;

    /// Whole curves over their axis go side by side.
    bool arePacked() const noexcept
    {
        return volume.places.empty() && volume.length >= leastPacked && volume.length <= mostPacked;
    }
    pack_work makeWork() const { return pack_work(smoother); }

    /// \param work  null when curves go one by one \return false when all are taken, or another thread failed
    bool doNext(pack_work* work)
    {
        const std::size_t first = next.fetch_add(blockLength);
        if (first >= count || hasFailed) return false;
        const std::size_t end = std::min(first + blockLength, count);
        try {
            for (std::size_t i = first; i < end; i += packLanes)
                doPack(i, std::min<std::size_t>(packLanes, end - i), work);
        } catch (...) {
            if (!hasFailed.exchange(true)) failure = std::current_exception();
        }
        finished += end - first;
        return true;
    }
    std::size_t done() const noexcept { return finished; }
    /// When all threads have ended.
    void rethrow() const
    {
        if (failure) std::rethrow_exception(failure);
    }

private:
    bool isWhole(std::size_t index) const
    {
        return volume.lengthOf(index) == static_cast<std::size_t>(volume.length) &&
               (volume.voids.empty() || volume.partOf(index).voids == 0);
    }
    std::span<const std::int16_t> curve(std::size_t index) const noexcept
    {
        const auto n = static_cast<std::size_t>(volume.length);
        return volume.samples.subspan(index * n, n);
    }

    void doPack(std::size_t first, std::size_t lanes, pack_work* work)
    {
        if (work) mark(first, lanes, *work);
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            const std::size_t index = first + lane;
            const int at = static_cast<int>(lane);
            if (work && isWhole(index))
                put(index, find_slant(work->steepOf(at)), find_zero(work->flatOf(at)));
            else
                map_curve(volume, index, out);
        }
    }

    void mark(std::size_t first, std::size_t lanes, pack_work& work) const noexcept
    {
        pack_source source{{}, volume.values.scale, volume.values.start};
        for (std::size_t lane = 0; lane < packLanes; ++lane)
            source.curves[lane] = curve(first + std::min(lane, lanes - 1)).data();
        mark_steps(source, {}, work);
    }

    void put(std::size_t index, stretch slant, stretch zero) noexcept
    {
        const std::span<const std::int16_t> samples = curve(index);
        const line contact = fit_raw(samples, slant, volume.values), free = fit_raw(samples, zero, volume.values);
        const int least = lowest(samples, volume.values.scale);
        const double force = volume.values.at(samples[static_cast<std::size_t>(least)]) - (free.a + free.b * least);
        if (slant.isFound()) out.rigidity[index] = (contact.b - free.b) * (1000.0 / volume.position.scale);
        if (zero.isFound()) out.adhesion[index] = force / std::fabs(volume.values.scale);
    }

    const force_volume& volume;
    map_numbers& out;
    curve_smoother smoother;
    std::size_t count;
    std::atomic<std::size_t> next{0}, finished{0};
    std::atomic<bool> hasFailed{false};
    std::exception_ptr failure;
};

void find_numbers(const force_volume& volume, const map_options& options, map_numbers& out)
{
    number_finder finder(volume, out);
    const std::size_t count = volume.curves();
    const std::size_t allowed = options.threads ? options.threads : std::thread::hardware_concurrency();
    const std::size_t wanted = std::clamp<std::size_t>(allowed, 1, count / number_finder::blockLength + 1);
    std::vector<pack_work> works;
    // Before any thread starts: what fails, fails here.
    for (std::size_t i = 0; finder.arePacked() && i < wanted; ++i) works.push_back(finder.makeWork());
    const auto workOf = [&](std::size_t thread) { return works.empty() ? nullptr : &works[thread]; };
    std::vector<std::jthread> helpers;
    for (std::size_t i = 1; i < wanted; ++i)
        helpers.emplace_back([&finder, work = workOf(i)] {
            while (finder.doNext(work)) {}
        });
    while (finder.doNext(workOf(0)))
        if (options.progress) options.progress(finder.done(), count);
    helpers.clear();
    finder.rethrow();
}

/// So close to where rounding turns that the last digits of another order of the sums could turn it.
/// \param raw  largest number that was summed
bool is_doubtful(double number, double raw, const map_scale& scale) noexcept
{
    if (!std::isfinite(number)) return false;
    const double exact = scale.exactSample(number), fraction = exact - std::floor(exact);
    const double digits = 1e-9 * (1.0 + std::fabs(number)) + 1e-14 * std::fabs(raw);
    return !(std::fabs(fraction - 0.5) > digits * std::max(scale.samplesPerNumber(), 1.0));
}

} // namespace

force_maps map_forces(const force_volume& volume, const map_options& options)
{
    constexpr double thousandth = 0.001, coarsest = 100.0;
    map_numbers numbers(volume.curves());
    find_numbers(volume, options, numbers);
    const double valueStep = std::fabs(volume.values.scale);
    const map_scale rigidity = choose_map_scale(numbers.rigidity, thousandth, coarsest);
    const map_scale adhesion = choose_map_scale(numbers.adhesion, valueStep, 0.0);
    // Once more what must not depend on the order of sums.
    const double offset = volume.values.start / valueStep,
                 slopeOffset = volume.values.start * 1000.0 / volume.position.scale;
    for (std::size_t i = 0; volume.places.empty() && i < numbers.rigidity.size(); ++i)
        if (is_doubtful(numbers.rigidity[i], slopeOffset, rigidity) ||
            is_doubtful(numbers.adhesion[i], offset, adhesion))
            map_curve(volume, i, numbers);
    if (options.progress) options.progress(volume.curves(), volume.curves());
    const std::string slope = slope_units(volume.values.get_units(), volume.position);
    return {make_map(numbers.rigidity, rigidity, slope),
            make_map(numbers.adhesion, adhesion, volume.values.get_units())};
}

namespace {

/// The ranges as they are numbered from `begin` on, as far as they lie behind it.
std::vector<formats::void_range> ranges_from(std::span<const formats::void_range> all, std::uint64_t begin)
{
    std::vector<formats::void_range> out;
    for (const formats::void_range& each : all)
        if (const std::uint64_t end = each.first + each.count; end > begin) {
            const std::uint64_t first = std::max(each.first, begin);
            out.push_back({first - begin, end - first});
        }
    return out;
}

} // namespace

force_volume volume_of(const SPMDataStream& stream, unsigned sub, const SPMDataStream* parameter, const char* told,
                       const char* placesTold, std::span<const formats::void_range> voids,
                       std::span<const formats::void_range> placeVoids)
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
    const std::size_t each = count / static_cast<std::size_t>(out.length);
    const auto lengths_in = [&](const SPMDataStream& from, const char* text, unsigned number) {
        const std::vector<std::size_t> all = formats::curve_lengths(from, text);
        const auto first = all.begin() + static_cast<std::ptrdiff_t>(number * each);
        return std::vector<std::size_t>(first, first + static_cast<std::ptrdiff_t>(each));
    };
    out.lengths = lengths_in(stream, told, sub);
    out.voids = ranges_from(voids, sub * count);
    if (!parameter) return out;
    out.placeLength = static_cast<int>(parameter->get_dimension(0).length);
    const std::size_t placed = each * static_cast<std::size_t>(out.placeLength);
    const unsigned number = parameter->array_length() > placed ? sub : 0; // one may serve all
    out.places = {static_cast<const std::int16_t*>(parameter->array_data()) + number * placed, placed};
    out.position = parameter->values.get_axis(0);
    out.placeVoids = ranges_from(placeVoids, number * placed);
    const std::vector<std::size_t> own = lengths_in(*parameter, placesTold, number);
    for (std::size_t i = 0; i < own.size(); ++i) out.lengths[i] = std::min(out.lengths[i], own[i]);
    return out;
}

SPMDataStream map_stream(const SPMDataStream& source, const force_map& map, const char* name, const char* label)
{
    SPMDataStream out;
    const auto count = static_cast<unsigned>(map.samples.size());
    out.Init(name, label, SPM_VAR_ARRAY, count, static_cast<unsigned>(sizeof(std::int16_t)));
    out.set_array_type(SPM_ARRAY_INT16);
    out.set_array(map.samples.data(), count, 0);
    out.set_dimension(0, source.get_dimension(1));
    out.set_dimension(1, source.get_dimension(2));
    out.values.set_axis(0, map.values);
    return out;
}

} // namespace vldv::curves
