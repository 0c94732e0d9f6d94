#include "primitives/fft/spectrum_1d.h"

#include "primitives/fft/fftw_plans.h"

#include <algorithm>
#include <cassert>
#include <fftw3.h>
#include <limits>
#include <map>
#include <stdexcept>

namespace vldv::primitives {

/// Both directions of one length; estimated, so that planning takes no time and always ends the same.
struct real_transform::plans {
    fftw_plan forward = nullptr, inverse = nullptr;

    explicit plans(std::size_t length)
    {
        const auto n = static_cast<int>(length);
        std::vector<double> real(length);
        std::vector<std::complex<double>> complex(length / 2 + 1);
        auto* const bins = reinterpret_cast<fftw_complex*>(complex.data());
        const std::lock_guard lock(fftw_planner());
        forward = fftw_plan_dft_r2c_1d(n, real.data(), bins, FFTW_ESTIMATE | FFTW_PRESERVE_INPUT);
        inverse = fftw_plan_dft_c2r_1d(n, bins, real.data(), FFTW_ESTIMATE | FFTW_DESTROY_INPUT);
    }
    plans(const plans&) = delete;
    plans& operator=(const plans&) = delete;
    ~plans()
    {
        const std::lock_guard lock(fftw_planner());
        fftw_destroy_plan(forward);
        fftw_destroy_plan(inverse);
    }
};

std::shared_ptr<const real_transform::plans> real_transform::plansOf(std::size_t length)
{
    constexpr std::size_t mostKept = 32;
    using kept_plans = std::map<std::size_t, std::shared_ptr<const plans>>;
    static std::mutex access;
    static kept_plans kept;
    kept_plans dropped; // destroyed last, outside of the lock
    const std::lock_guard lock(access);
    if (const auto found = kept.find(length); found != kept.end()) return found->second;
    if (kept.size() >= mostKept) dropped.swap(kept);
    return kept[length] = std::make_shared<const plans>(length);
}

real_transform::real_transform(std::size_t length)
{
    if (length == 0) return;
    if (length > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw std::length_error("too many samples for a Fourier transform");
    row.resize(length);
    spectrum.resize(length / 2 + 1);
    made = plansOf(length);
}

real_transform::~real_transform() = default;

void real_transform::forward()
{
    if (made) fftw_execute_dft_r2c(made->forward, row.data(), reinterpret_cast<fftw_complex*>(spectrum.data()));
}

void real_transform::inverse()
{
    if (made) fftw_execute_dft_c2r(made->inverse, reinterpret_cast<fftw_complex*>(spectrum.data()), row.data());
}

namespace {

/// The next length without prime factors above 5.
std::size_t fast_length(std::size_t least) noexcept
{
    for (std::size_t length = std::max<std::size_t>(least, 1);; ++length) {
        std::size_t rest = length;
        for (const std::size_t factor : {2u, 3u, 5u})
            while (rest % factor == 0) rest /= factor;
        if (rest == 1) return length;
    }
}

/// Fewer samples are summed as they stand.
constexpr std::size_t fewSamples = 64;

} // namespace

void autocorrelation(std::span<const double> y, std::span<double> out)
{
    assert(out.size() == y.size());
    const std::size_t n = y.size();
    if (n <= fewSamples) {
        for (std::size_t k = 0; k < n; ++k) {
            out[k] = 0.0;
            for (std::size_t i = 0; i + k < n; ++i) out[k] += y[i] * y[i + k];
        }
        return;
    }
    // Zeros behind the row keep its end from meeting its start.
    real_transform transform(fast_length(2 * n - 1));
    std::copy(y.begin(), y.end(), transform.values().begin());
    transform.forward();
    // The autocorrelation is the inverse transform of the squared magnitudes (Wiener and Khinchin): n log n steps
    // instead of n^2. FFTW's transforms there and back multiply by the length, which the share below takes out.
    for (std::complex<double>& bin : transform.bins()) bin = std::norm(bin);
    transform.inverse();
    const double share = 1.0 / static_cast<double>(transform.values().size());
    for (std::size_t k = 0; k < n; ++k) out[k] = transform.values()[k] * share;
}

} // namespace vldv::primitives
