#pragma once
#include "vldv_api.h"

#include <cstddef>
#include <vector>

namespace vldv::primitives {

/// Least-squares fits of a uniform cubic B-spline to rows of equally spaced numbers, the first and the last of which
/// lie on the ends of the first and of the last span. All that depends on the lengths alone is made once, so that one
/// object serves any number of rows and threads. Coefficients s … s + 3 make up span s.
class uniform_spline {
public:
    /// \param samples_  at least 4
    /// \param spans_    brought into 1 … samples - 3: more would leave coefficients undetermined
    uniform_spline(int samples_, int spans_);

    int samples() const noexcept { return static_cast<int>(weightsOf.size()); }
    int spans() const noexcept { return static_cast<int>(begins.size()) - 1; }
    int coefficients() const noexcept { return spans() + 3; }

    /// Coefficients that fit best. \param out  room for all of them
    void fit(const double* row, double* out) const noexcept;
    /// The spline at all samples.
    void evaluate(const double* coefficient, double* row) const noexcept;

    // What the two are made of, for those who work on several rows at once.

    /// What the coefficients of its span weigh at a sample.
    struct weights {
        double of[4];
    };
    /// A row of the factors L D L' of the normal matrix: D inverted, and L left of the diagonal, nearest first, with
    /// zeros outside of the matrix.
    struct factor {
        double inverse;
        double left[3];
    };
    struct tables {
        int samples, spans;
        const weights* weightsAt; ///< of each sample
        const int* begins;        ///< samples begins[s] … begins[s + 1] - 1 lie in span s
        const factor* factors;    ///< of each coefficient
    };
    tables view() const noexcept { return {samples(), spans(), weightsOf.data(), begins.data(), factors.data()}; }

private:
    void factorise();

    std::vector<weights> weightsOf;
    std::vector<int> begins;
    std::vector<factor> factors;
};

} // namespace vldv::primitives

/// Smooths a row in place: it becomes the uniform cubic B-spline of `spans` spans from its first sample to its last
/// that fits it best in the sense of least squares. Fewer than 4 samples stay as they are; `spans` is brought into
/// 1 … n - 3. A cubic polynomial stays what it is, to rounding. \throws std::bad_alloc
VLDV_API void b_spline_1d(double* values, int n, int spans);
