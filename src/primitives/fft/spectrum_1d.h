#pragma once
#include <complex>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

/// One-dimensional Fourier transforms of real numbers in double precision; any length. Results do not depend on what
/// was transformed before.
namespace vldv::primitives {

/// A row of real numbers and its spectrum, which are transformed into each other. The first use of a length plans it;
/// plans are shared by the process. One object belongs to one thread.
class real_transform {
public:
    explicit real_transform(std::size_t length); ///< all zeros \throws std::bad_alloc, std::length_error above 2^31 - 1
    ~real_transform();

    std::span<double> values() noexcept { return row; }
    /// length / 2 + 1 of them: bin k is sum(values[i] exp(-2 pi I i k / length)). None for a length of 0.
    std::span<std::complex<double>> bins() noexcept { return spectrum; }
    /// Fills the bins; the values stay.
    void forward();
    /// Fills the values with `length` times the row that has these bins; the bins are lost.
    void inverse();

private:
    struct plans;
    static std::shared_ptr<const plans> plansOf(std::size_t length);

    std::vector<double> row;
    std::vector<std::complex<double>> spectrum;
    std::shared_ptr<const plans> made;
};

/// r[k] = sum over i from 0 to n - k - 1 of y[i] * y[i + k] for k = 0 … n - 1. Each comes within n * 1e-16 of r[0].
/// \param out  as long as `y`
void autocorrelation(std::span<const double> y, std::span<double> out);

} // namespace vldv::primitives
