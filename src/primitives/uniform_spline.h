#pragma once
#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace primitives {

/// Least-squares fits of a uniform cubic B-spline to rows of equally spaced numbers, the first and the last of which
/// lie on the ends of the first and of the last span. All that depends on the lengths alone is made once, so that one
/// object serves any number of rows and threads; the work on a row is templates on what a number is: a double, or a
/// vector of doubles, one a row. Both give the same bits.
class uniform_spline {
public:
    /// \param samples_  at least 4
    /// \param spans_    brought into 1 … samples - 3: more would leave coefficients undetermined
    uniform_spline(int samples_, int spans_);

    int samples() const noexcept { return static_cast<int>(weightsOf.size()); }
    int spans() const noexcept { return static_cast<int>(begins.size()) - 1; }
    int coefficients() const noexcept { return spans() + 3; }

    /// Weights of the coefficients s … s + 3 on a sample of span s.
    using weights = std::array<double, 4>;
    const weights& weightsAt(int sample) const noexcept { return weightsOf[static_cast<std::size_t>(sample)]; }
    /// Samples [spanBegin(s), spanBegin(s + 1)) lie in span s; `spans` gives the number of samples.
    int spanBegin(int span) const noexcept { return begins[static_cast<std::size_t>(span)]; }

    /// Coefficients that fit best. \param row  gives sample i, called once for each in rising order
    /// \param out  room for all coefficients
    template <class Number, class Row>
    [[gnu::always_inline]] void fit(Row& row, Number* out) const
    {
        for (int k = 0; k < coefficients(); ++k) out[k] = Number{};
        for (int s = 0; s < spans(); ++s) {
            Number sum[4] = {};
            for (int i = spanBegin(s); i < spanBegin(s + 1); ++i) {
                const Number y = row(i);
                const weights& w = weightsAt(i);
                for (std::size_t k = 0; k < 4; ++k) sum[k] += y * w[k];
            }
            for (int k = 0; k < 4; ++k) out[s + k] += sum[k];
        }
        solve(out);
    }
    /// The spline at a sample. \param coefficient  the first of its span
    template <class Number>
    [[gnu::always_inline]] Number at(int sample, const Number* coefficient) const
    {
        const weights& w = weightsAt(sample);
        return (coefficient[0] * w[0] + coefficient[1] * w[1]) + (coefficient[2] * w[2] + coefficient[3] * w[3]);
    }

private:
    /// A row of the factors L D L' of the normal matrix: D inverted, and L left of the diagonal, nearest first.
    struct factor {
        double inverse = 0.0;
        std::array<double, 3> left{};
    };

    void factorise();
    template <class Number>
    [[gnu::always_inline]] void solve(Number* x) const
    {
        const int count = coefficients();
        for (int k = 1; k < count; ++k)
            for (int b = 1; b <= 3 && b <= k; ++b)
                x[k] -= x[k - b] * factors[static_cast<std::size_t>(k)].left[static_cast<std::size_t>(b - 1)];
        for (int k = 0; k < count; ++k) x[k] = x[k] * factors[static_cast<std::size_t>(k)].inverse;
        for (int k = count - 2; k >= 0; --k)
            for (int b = 1; b <= 3 && k + b < count; ++b)
                x[k] -= x[k + b] * factors[static_cast<std::size_t>(k + b)].left[static_cast<std::size_t>(b - 1)];
    }

    std::vector<weights> weightsOf;
    std::vector<int> begins;
    std::vector<factor> factors;
};

} // namespace primitives

/// Smooths a row in place: it becomes the uniform cubic B-spline of `spans` spans from its first sample to its last
/// that fits it best in the sense of least squares. Fewer than 4 samples stay as they are; `spans` is brought into
/// 1 … n - 3. A cubic polynomial stays what it is, to rounding. \throws std::bad_alloc
void b_spline_1d(double* values, int n, int spans);
