// One form of the search in packs, for the instructions that VLDV_TARGET names; included once for each, inside of its
// namespace. Vectors that are wider than the instructions are split by the compiler.

using pack = double __attribute__((vector_size(8 * packLanes)));
using pack_bits = std::int64_t __attribute__((vector_size(8 * packLanes)));
using samples_16 = std::int16_t __attribute__((vector_size(2 * packLanes)));
using samples_32 = std::int32_t __attribute__((vector_size(4 * packLanes)));

/// Samples i … i + 7 of all curves, in physical units, a pack for each; those behind the end are the last.
VLDV_TARGET void read_tile(const pack_source& source, int i, int n, pack* out) noexcept
{
    alignas(64) std::int16_t tile[packLanes][packLanes];
    if (i + packLanes <= n) {
        transpose(source.curves, i, tile);
    } else {
        for (int k = 0; k < packLanes; ++k)
            for (int lane = 0; lane < packLanes; ++lane) tile[k][lane] = source.curves[lane][i + k < n ? i + k : n - 1];
    }
    for (int k = 0; k < packLanes; ++k) {
        samples_16 raw;
        std::memcpy(&raw, tile[k], sizeof raw);
        out[k] = __builtin_convertvector(__builtin_convertvector(raw, samples_32), pack) * source.scale + source.start;
    }
}

VLDV_TARGET void fit_packs(const pack_source& source, const primitives::uniform_spline& spline, pack* out) noexcept
{
    const int count = spline.coefficients(), n = spline.samples();
    for (int k = 0; k < count; ++k) out[k] = pack{};
    pack tile[packLanes] = {};
    for (int s = 0; s < spline.spans(); ++s) {
        pack sum0 = {}, sum1 = {}, sum2 = {}, sum3 = {};
        for (int i = spline.spanBegin(s); i < spline.spanBegin(s + 1); ++i) {
            if (i % packLanes == 0) read_tile(source, i, n, tile);
            const pack y = tile[i % packLanes];
            const primitives::uniform_spline::weights& w = spline.weightsAt(i);
            sum0 += y * w[0];
            sum1 += y * w[1];
            sum2 += y * w[2];
            sum3 += y * w[3];
        }
        out[s] += sum0;
        out[s + 1] += sum1;
        out[s + 2] += sum2;
        out[s + 3] += sum3;
    }
    for (int k = 1; k < count; ++k)
        for (int b = 1; b <= (k < 3 ? k : 3); ++b)
            out[k] -= out[k - b] * spline.factorAt(k).left[static_cast<std::size_t>(b - 1)];
    for (int k = 0; k < count; ++k) out[k] *= spline.factorAt(k).inverse;
    for (int k = count - 2; k >= 0; --k)
        for (int b = 1; b <= (count - 1 - k < 3 ? count - 1 - k : 3); ++b)
            out[k] -= out[k + b] * spline.factorAt(k + b).left[static_cast<std::size_t>(b - 1)];
}

/// The smoothed curves.
VLDV_TARGET void smooth_packs(const pack_source& source, const pack_work& work) noexcept
{
    const int n = work.smoother.samples();
    auto* const out = reinterpret_cast<pack*>(work.steps);
    if (const primitives::uniform_spline* const spline = work.smoother.splineOrNull()) {
        auto* c = reinterpret_cast<pack*>(work.coefficients);
        fit_packs(source, *spline, c);
        for (int s = 0; s < spline->spans(); ++s, ++c) {
            const pack c0 = c[0], c1 = c[1], c2 = c[2], c3 = c[3];
            for (int i = spline->spanBegin(s); i < spline->spanBegin(s + 1); ++i) {
                const primitives::uniform_spline::weights& w = spline->weightsAt(i);
                out[i] = (c0 * w[0] + c1 * w[1]) + (c2 * w[2] + c3 * w[3]);
            }
        }
        return;
    }
    auto* const y = reinterpret_cast<pack*>(work.short_);
    for (int i = 0; i < n; i += packLanes) read_tile(source, i, n, y + i);
    out[0] = y[0];
    out[n - 1] = y[n - 1];
    for (int i = 1; i < n - 1; ++i) {
        const pack three = y[i - 1] + y[i] + y[i + 1];
        const bool hasFive = work.smoother.reach() == 2 && i >= 2 && i < n - 2;
        out[i] = hasFive ? (three + y[i - 2] + y[i + 2]) / 5.0 : three / 3.0;
    }
}

/// Smoothed values become steps without spikes. Adds them up in `sum` and `squares`.
VLDV_TARGET void filter_packs(pack* values, int n, pack& sum, pack& squares) noexcept
{
    pack before = values[1] - values[0], next = values[2], here = next - values[1];
    pack total = before, products = before * before;
    values[0] = before;
    for (int i = 1; i < n - 1; ++i) {
        const pack later = values[i + 2 < n ? i + 2 : n - 1];
        const pack after = i + 2 < n ? later - next : here;
        const pack low = here < before ? here : before, high = here < before ? before : here;
        const pack least = after < high ? after : high;
        const pack median = least < low ? low : least;
        values[i] = median;
        total += median;
        products += median * median;
        before = here;
        here = after;
        next = later;
    }
    values[n - 1] = here;
    sum = total + here;
    squares = products + here * here;
}

VLDV_TARGET void mark_packs(const pack* steps, const pack& spread, const pack_thresholds& thresholds,
                            pack_work& work) noexcept
{
    const int n = work.smoother.samples();
    const pack level = spread * thresholds.zero, least = -spread;
    for (int word = 0; word < sample_bits::wordsFor(n); ++word) {
        pack_bits steep = {}, flat = {};
        const int end = word * 64 + 64 < n ? word * 64 + 64 : n;
        for (int i = end - 1; i >= word * 64; --i) {
            // A comparison that holds is -1.
            steep = steep + steep - (steps[i] * thresholds.slant <= least);
            flat = flat + flat - ((steps[i] <= level) & (steps[i] >= -level));
        }
        std::memcpy(&work.steep[static_cast<std::size_t>(word * packLanes)], &steep, sizeof steep);
        std::memcpy(&work.flat[static_cast<std::size_t>(word * packLanes)], &flat, sizeof flat);
    }
}

VLDV_TARGET void mark_steps_form(const pack_source& source, const pack_thresholds& thresholds, pack_work& work) noexcept
{
    const int n = work.smoother.samples();
    auto* const steps = reinterpret_cast<pack*>(work.steps);
    smooth_packs(source, work);
    pack sum, squares, spread;
    filter_packs(steps, n, sum, squares);
    for (int lane = 0; lane < packLanes; ++lane) spread[lane] = deviation(squares[lane] / n, sum[lane] / n);
    mark_packs(steps, spread, thresholds, work);
}
