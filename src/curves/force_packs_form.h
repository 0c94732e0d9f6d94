// One form of the search in packs, for the instructions that VLDV_TARGET names; included once for each, inside of its
// namespace, behind `as_numbers`, `lower` and `higher` of these. Vectors that are wider than the instructions are split
// by the compiler.

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
    for (int k = 0; k < packLanes; ++k) { out[k] = as_numbers(tile[k]) * source.scale + source.start; }
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

VLDV_TARGET pack median(const pack& a, const pack& b, const pack& c) noexcept
{
    return higher(lower(a, b), lower(higher(a, b), c));
}

/// Turns smoothed values, taken one by one, into steps without spikes, and adds these up.
struct step_filter {
    pack* out;
    pack before{}, here{}, last{}, sum{}, squares{};

    VLDV_TARGET void begin(const pack& first, const pack& second, const pack& third) noexcept
    {
        before = second - first;
        here = third - second;
        last = third;
        put(before);
    }
    VLDV_TARGET void take(const pack& value) noexcept
    {
        const pack after = value - last;
        put(median(before, here, after));
        before = here;
        here = after;
        last = value;
    }
    /// The last step is repeated.
    VLDV_TARGET void end() noexcept
    {
        put(median(before, here, here));
        put(here);
    }

private:
    VLDV_TARGET void put(const pack& step) noexcept
    {
        *out++ = step;
        sum += step;
        squares += step * step;
    }
};

/// Of curves that a spline smooths; they are so long that the first three samples lie in one span.
VLDV_TARGET void filter_spline(const pack_source& source, const pack_work& work, step_filter& filter) noexcept
{
    const primitives::uniform_spline& spline = *work.smoother.splineOrNull();
    auto* c = reinterpret_cast<pack*>(work.coefficients);
    fit_packs(source, spline, c);
    const auto value = [&](int i) VLDV_TARGET_LAMBDA {
        const primitives::uniform_spline::weights& w = spline.weightsAt(i);
        return (c[0] * w[0] + c[1] * w[1]) + (c[2] * w[2] + c[3] * w[3]);
    };
    filter.begin(value(0), value(1), value(2));
    for (int s = 0, i = 3; s < spline.spans(); ++s, ++c)
        for (; i < spline.spanBegin(s + 1); ++i) filter.take(value(i));
    filter.end();
}

/// Of curves whose neighbours make means.
VLDV_TARGET void filter_means(const pack_source& source, const pack_work& work, step_filter& filter) noexcept
{
    const int n = work.smoother.samples();
    auto* const y = reinterpret_cast<pack*>(work.short_);
    for (int i = 0; i < n; i += packLanes) read_tile(source, i, n, y + i);
    const auto value = [&](int i) VLDV_TARGET_LAMBDA {
        if (i == 0 || i == n - 1) return y[i];
        const pack three = y[i - 1] + y[i] + y[i + 1];
        const bool hasFive = work.smoother.reach() == 2 && i >= 2 && i < n - 2;
        return hasFive ? (three + y[i - 2] + y[i + 2]) / 5.0 : three / 3.0;
    };
    filter.begin(value(0), value(1), value(2));
    for (int i = 3; i < n; ++i) filter.take(value(i));
    filter.end();
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
    step_filter filter{steps};
    if (work.smoother.splineOrNull())
        filter_spline(source, work, filter);
    else
        filter_means(source, work, filter);
    pack spread;
    for (int lane = 0; lane < packLanes; ++lane)
        spread[lane] = deviation(filter.squares[lane] / n, filter.sum[lane] / n);
    mark_packs(steps, spread, thresholds, work);
}
