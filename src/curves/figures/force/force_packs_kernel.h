// Included by the sources of the kernels alone; see primitives/simd/vector.h.
#pragma once
#include "curves/figures/force/force_packs.h"
#include "primitives/simd/vector.h"

#include <limits>

namespace vldv::curves {
namespace {

using primitives::simd::vec;
using primitives::simd::wide;

/// One number of each curve, in as many registers as it takes.
template <class Number>
struct lanes {
    static constexpr int parts = packLanes / wide<Number>;
    vec<Number> part[parts];
};
using pack = lanes<double>;
using pack_bits = lanes<std::int64_t>;

/// Part by part.
template <class Result, class Operation, class... Packs>
inline Result joined(Operation operation, const Packs&... packs)
{
    return [&]<int... K>(std::integer_sequence<int, K...>) -> Result {
        const auto at = [&]<int Part>(std::integral_constant<int, Part>) { return operation(packs.part[Part]...); };
        return {{at(std::integral_constant<int, K>{})...}};
    }(std::make_integer_sequence<int, Result::parts>{});
}

template <class Number>
inline lanes<Number> operator+(const lanes<Number>& a, const lanes<Number>& b)
{
    return joined<lanes<Number>>([](auto x, auto y) { return x + y; }, a, b);
}
template <class Number>
inline lanes<Number> operator-(const lanes<Number>& a, const lanes<Number>& b)
{
    return joined<lanes<Number>>([](auto x, auto y) { return x - y; }, a, b);
}
inline pack operator*(const pack& a, const pack& b)
{
    return joined<pack>([](auto x, auto y) { return x * y; }, a, b);
}
inline pack operator+(const pack& a, double b)
{
    return joined<pack>([b](auto x) { return x + b; }, a);
}
inline pack operator*(const pack& a, double b)
{
    return joined<pack>([b](auto x) { return x * b; }, a);
}
inline pack operator/(const pack& a, double b)
{
    return joined<pack>([b](auto x) { return x / b; }, a);
}
inline pack operator-(const pack& a)
{
    return joined<pack>([](auto x) { return -x; }, a);
}
inline pack_bits operator&(const pack_bits& a, const pack_bits& b)
{
    return joined<pack_bits>([](auto x, auto y) { return x & y; }, a, b);
}
inline pack_bits operator<=(const pack& a, const pack& b)
{
    return joined<pack_bits>([](auto x, auto y) { return x <= y; }, a, b);
}
inline pack lower(const pack& a, const pack& b)
{
    return joined<pack>([](auto x, auto y) { return primitives::simd::lower(x, y); }, a, b);
}
inline pack higher(const pack& a, const pack& b)
{
    return joined<pack>([](auto x, auto y) { return primitives::simd::higher(x, y); }, a, b);
}

inline pack as_numbers(const std::int16_t* samples)
{
#if VLDV_VECTOR_BYTES == 32
    // One load, since a register that has just been stored whole is late in halves.
    const __m128i raw = _mm_loadu_si128(reinterpret_cast<const __m128i*>(samples));
    const auto numbers = [](__m128i four) { return _mm256_cvtepi32_pd(_mm_cvtepi16_epi32(four)); };
    return {{numbers(raw), numbers(_mm_unpackhi_epi64(raw, raw))}};
#else
    return [&]<int... K>(std::integer_sequence<int, K...>) -> pack {
        return {{primitives::simd::load_doubles(samples + K * wide<double>)...}};
    }(std::make_integer_sequence<int, pack::parts>{});
#endif
}

/// The first values of all curves, in physical units.
inline pack first_values(const pack_source& source)
{
    std::int16_t first[packLanes];
    for (int lane = 0; lane < packLanes; ++lane) first[lane] = source.curves[lane][0];
    return as_numbers(first) * source.scale + source.start;
}

using sample_tile = std::int16_t[packLanes][packLanes];

/// tile[k][lane] = curves[lane][i + k].
inline void transpose(const std::int16_t* const* curves, int i, sample_tile& tile)
{
    vec<std::int16_t, packLanes> rows[packLanes], next[packLanes];
    for (int lane = 0; lane < packLanes; ++lane) std::memcpy(&rows[lane], curves[lane] + i, sizeof rows[lane]);
    // Interleaving the halves of the rows turns the bits of a place round by one: three times swaps row and column.
    for (int turn = 0; turn < 3; ++turn) {
        for (int k = 0; k < packLanes / 2; ++k) {
            next[2 * k] = primitives::simd::interleaved<false>(rows[k], rows[k + packLanes / 2]);
            next[2 * k + 1] = primitives::simd::interleaved<true>(rows[k], rows[k + packLanes / 2]);
        }
        for (int k = 0; k < packLanes; ++k) rows[k] = next[k];
    }
    for (int k = 0; k < packLanes; ++k) primitives::simd::store(tile[k], rows[k]);
}

/// Samples i … i + 7 of all curves, in physical units and counted from the first, a pack for each; those behind the end
/// are the last.
inline void read_tile(const pack_source& source, const pack& first, int i, int n, pack* out)
{
    const auto put = [&](const sample_tile& tile) {
        for (int k = 0; k < packLanes; ++k) out[k] = (as_numbers(tile[k]) * source.scale + source.start) - first;
    };
    alignas(64) sample_tile tile;
    if (i + packLanes <= n) {
        transpose(source.curves, i, tile);
        return put(tile); // here already, out of the registers
    }
    for (int k = 0; k < packLanes; ++k)
        for (int lane = 0; lane < packLanes; ++lane) tile[k][lane] = source.curves[lane][i + k < n ? i + k : n - 1];
    put(tile);
}

void fit_packs(const pack_source& source, const primitives::uniform_spline::tables& spline, pack* out)
{
    const int count = spline.spans + 3, n = spline.samples;
    for (int k = 0; k < count; ++k) out[k] = pack{};
    pack tile[packLanes] = {};
    const pack first = first_values(source);
    for (int s = 0; s < spline.spans; ++s) {
        pack sum0{}, sum1{}, sum2{}, sum3{};
        for (int i = spline.begins[s]; i < spline.begins[s + 1]; ++i) {
            if (i % packLanes == 0) read_tile(source, first, i, n, tile);
            const pack y = tile[i % packLanes];
            const double* const w = spline.weightsAt[i].of;
            sum0 = sum0 + y * w[0];
            sum1 = sum1 + y * w[1];
            sum2 = sum2 + y * w[2];
            sum3 = sum3 + y * w[3];
        }
        out[s] = out[s] + sum0;
        out[s + 1] = out[s + 1] + sum1;
        out[s + 2] = out[s + 2] + sum2;
        out[s + 3] = out[s + 3] + sum3;
    }
    for (int k = 1; k < count; ++k)
        for (int b = 1; b <= (k < 3 ? k : 3); ++b) out[k] = out[k] - out[k - b] * spline.factors[k].left[b - 1];
    for (int k = 0; k < count; ++k) out[k] = out[k] * spline.factors[k].inverse;
    for (int k = count - 2; k >= 0; --k)
        for (int b = 1; b <= (count - 1 - k < 3 ? count - 1 - k : 3); ++b)
            out[k] = out[k] - out[k + b] * spline.factors[k + b].left[b - 1];
}

inline pack median(const pack& a, const pack& b, const pack& c) { return higher(lower(a, b), lower(higher(a, b), c)); }

/// Turns smoothed values, taken one by one, into steps without spikes, and adds these up.
struct step_filter {
    pack* out;
    pack before{}, here{}, last{}, sum{}, squares{};

    void begin(const pack& first, const pack& second, const pack& third)
    {
        before = second - first;
        here = third - second;
        last = third;
        put(before);
    }
    void take(const pack& value)
    {
        const pack after = value - last;
        put(median(before, here, after));
        before = here;
        here = after;
        last = value;
    }
    /// The last step is repeated.
    void end()
    {
        put(median(before, here, here));
        put(here);
    }

private:
    void put(const pack& step)
    {
        *out++ = step;
        sum = sum + step;
        squares = squares + step * step;
    }
};

/// Of curves that a spline smooths; they are so long that the first three samples lie in one span.
inline void filter_spline(const pack_step& step, step_filter& filter)
{
    auto* c = reinterpret_cast<pack*>(step.coefficients);
    fit_packs(step.source, step.spline, c);
    const auto value = [&](int i) {
        const double* const w = step.spline.weightsAt[i].of;
        return (c[0] * w[0] + c[1] * w[1]) + (c[2] * w[2] + c[3] * w[3]);
    };
    filter.begin(value(0), value(1), value(2));
    for (int s = 0, i = 3; s < step.spline.spans; ++s, ++c)
        for (; i < step.spline.begins[s + 1]; ++i) filter.take(value(i));
    filter.end();
}

/// Of curves whose neighbours make means.
inline void filter_means(const pack_step& step, step_filter& filter)
{
    const int n = step.samples;
    auto* const y = reinterpret_cast<pack*>(step.shortPart);
    const pack first = first_values(step.source);
    for (int i = 0; i < n; i += packLanes) read_tile(step.source, first, i, n, y + i);
    const auto value = [&](int i) {
        if (i == 0 || i == n - 1) return y[i];
        const pack three = y[i - 1] + y[i] + y[i + 1];
        const bool hasFive = step.reach == 2 && i >= 2 && i < n - 2;
        return hasFive ? (three + y[i - 2] + y[i + 2]) / 5.0 : three / 3.0;
    };
    filter.begin(value(0), value(1), value(2));
    for (int i = 3; i < n; ++i) filter.take(value(i));
    filter.end();
}

void mark_packs(const pack_step& step, const pack& spread)
{
    const auto* const steps = reinterpret_cast<const pack*>(step.steps);
    const pack level = spread * step.thresholds.zero, least = -spread;
    for (int first = 0, word = 0; first < step.samples; first += 64, word += packLanes) {
        pack_bits steep{}, flat{};
        const int end = first + 64 < step.samples ? first + 64 : step.samples;
        for (int i = end - 1; i >= first; --i) {
            // A comparison that holds is -1.
            steep = steep + steep - (steps[i] * step.thresholds.slant <= least);
            flat = flat + flat - ((steps[i] <= level) & (-level <= steps[i]));
        }
        std::memcpy(step.steep + word, &steep, sizeof steep);
        std::memcpy(step.flat + word, &flat, sizeof flat);
    }
}

void run_pack_step(const pack_step& step) noexcept
{
    step_filter filter{reinterpret_cast<pack*>(step.steps)};
    if (step.reach == 0)
        filter_spline(step, filter);
    else
        filter_means(step, filter);
    double sums[packLanes], squares[packLanes];
    std::memcpy(sums, &filter.sum, sizeof sums);
    std::memcpy(squares, &filter.squares, sizeof squares);
    // Steps of 0 are never steep: all of them stay below a spread above 0.
    constexpr double aboveNone = std::numeric_limits<double>::min();
    for (int lane = 0; lane < packLanes; ++lane)
        sums[lane] =
            squares[lane] == 0.0 ? aboveNone : deviation(squares[lane] / step.samples, sums[lane] / step.samples);
    pack spread;
    std::memcpy(&spread, sums, sizeof spread);
    mark_packs(step, spread);
}

} // namespace
} // namespace vldv::curves
