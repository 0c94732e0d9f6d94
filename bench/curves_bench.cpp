// Curve mathematics and force maps against what their arithmetic alone costs.
#include "curves/figures/correlation.h"
#include "curves/figures/force/force_map.h"
#include "curves/figures/force/force_packs.h"
#include "curves_floor.h"
#include "document/contact_model.h"
#include "primitives/fft/fftw_plans.h"
#include "ratio.h"

#include <cmath>
#include <complex>
#include <fftw3.h>
#include <random>
#include <vector>

using namespace vldv;

namespace {

constexpr int curveLength = 4096, volumeSide = 128, forceLength = 1024;

std::vector<float> rough_profile()
{
    std::mt19937 random(1);
    std::vector<float> y(curveLength);
    double height = 0.0;
    for (float& value : y) {
        height = 0.98 * height + static_cast<double>(random()) / 4294967296.0 - 0.5;
        value = static_cast<float>(height + 300.0);
    }
    return y;
}

/// Curves of a probe that touches, with noise; each a little farther from the surface than the one before.
std::vector<std::int16_t> force_curves()
{
    std::mt19937 random(2);
    std::normal_distribution<double> noise(0.0, 30.0);
    const document::contact pair;
    std::vector<double> form;
    for (int i = 0; i < forceLength + volumeSide; ++i)
        form.push_back(250.0 * document::equilibrium_force(pair, -60.0 + 0.15 * i, true));
    std::vector<std::int16_t> out;
    out.reserve(std::size_t{volumeSide} * volumeSide * forceLength);
    std::vector<double> rough(4099);
    for (double& value : rough) value = noise(random);
    std::size_t at = 0;
    for (int curve = 0; curve < volumeSide * volumeSide; ++curve)
        for (int i = 0; i < forceLength; ++i, at = (at + 1) % rough.size())
            out.push_back(
                static_cast<std::int16_t>(form[static_cast<std::size_t>(i + curve % volumeSide)] + rough[at]));
    return out;
}

/// Two transforms of twice the length, which no way around the sums can do without.
class two_transforms {
public:
    explicit two_transforms(const std::vector<float>& y) : row(2 * y.size()), bins(y.size() + 1)
    {
        const std::lock_guard lock(primitives::fftw_planner());
        const int n = static_cast<int>(row.size());
        auto* const out = reinterpret_cast<fftw_complex*>(bins.data());
        forward = fftw_plan_dft_r2c_1d(n, row.data(), out, FFTW_MEASURE);
        inverse = fftw_plan_dft_c2r_1d(n, out, row.data(), FFTW_MEASURE);
        std::copy(y.begin(), y.end(), row.begin());
    }
    ~two_transforms()
    {
        const std::lock_guard lock(primitives::fftw_planner());
        fftw_destroy_plan(forward);
        fftw_destroy_plan(inverse);
    }
    void run()
    {
        fftw_execute(forward);
        fftw_execute(inverse);
        for (double& value : row) value *= 1.0 / static_cast<double>(row.size());
    }

private:
    std::vector<double> row;
    std::vector<std::complex<double>> bins;
    fftw_plan forward, inverse;
};

} // namespace

int main()
{
    const std::vector<float> y = rough_profile();
    std::vector<float> out(y.size());
    two_transforms transforms(y);
    const std::vector<std::int16_t> forces = force_curves();
    const curves::force_volume volume{forces, forceLength, VLAxis(0, 0.15, "nm"), VLAxis(0, 0.004, "nN")};
    volatile double kept = 0.0;

    bench::contest small;
    constexpr int repeats = 100;
    const auto often = [](auto run) {
        return [run] {
            for (int i = 0; i < repeats; ++i) run();
        };
    };
    small.add("100 x two transforms of twice the length", often([&] { transforms.run(); }));
    small.add("100 x structure function, 4096", often([&] { curves::structure(y, out); }));
    small.add("100 x cyclic structure function, 4096", often([&] { curves::structure_cyclic(y, out); }));
    small.add("100 x autocorrelation, 4096", often([&] { curves::autocorrelate(y, out); }));
    small.run(15);
    bench::contest large;
    large.add("structure function, 4096, as its sums", [&] { curves::structure_reference(y, out); });
    large.add("arithmetic of a force map", [&] { kept = bench::force_arithmetic(forces.size()); });
    large.add("force map 128 x 128 x 1024, one thread",
              [&] { kept = curves::map_forces(volume, {1, {}}).rigidity.samples[0]; });
    large.run(25);

    bench::verdict verdict;
    verdict.at_most(
        "structure function / two transforms",
        small.best("100 x structure function, 4096") / small.best("100 x two transforms of twice the length"), 2.0);
    verdict.at_most("force map / its arithmetic",
                    large.best("force map 128 x 128 x 1024, one thread") / large.best("arithmetic of a force map"),
                    4.6);
    return verdict.exit_status();
}
