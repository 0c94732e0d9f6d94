// Transforms and histograms of images against what their bytes and their arithmetic alone cost, and against FFTW.
#include "primitives/fft/fft.h"
#include "primitives/map/histogram.h"
#include "ratio.h"
#include "spectra/figures/histogram.h"

#include <cmath>
#include <fftw3.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <string>
#include <vector>

using namespace vldv;

namespace {

template <class Number>
std::vector<Number> noise(std::size_t count)
{
    std::vector<Number> out(count);
    std::uint32_t state = 1;
    for (Number& each : out) {
        state = state * 1664525u + 1013904223u;
        each = static_cast<Number>(static_cast<std::int32_t>(state) >> 16);
    }
    return out;
}

/// FFTW with the best plan that it finds; finding takes seconds.
template <class Number>
struct measured_plan;
template <>
struct measured_plan<float> {
    measured_plan(int width, int height, float* in, float* out)
        : plan(fftwf_plan_dft_r2c_2d(height, width, in, reinterpret_cast<fftwf_complex*>(out), FFTW_MEASURE))
    {
    }
    void run() const { fftwf_execute(plan); }
    fftwf_plan plan;
};
template <>
struct measured_plan<double> {
    measured_plan(int width, int height, double* in, double* out)
        : plan(fftw_plan_dft_r2c_2d(height, width, in, reinterpret_cast<fftw_complex*>(out), FFTW_MEASURE))
    {
    }
    void run() const { fftw_execute(plan); }
    fftw_plan plan;
};

/// A transform in place reads and writes each number at least twice: once by rows and once by columns.
template <class Number>
void two_copies(std::vector<Number>& image)
{
    for (int pass = 0; pass < 2; ++pass)
        for (Number& each : image) each = each * Number(0.5);
}

template <class Number>
void transforms(bench::verdict& verdict, int width, int height, double limit)
{
    const std::string name =
        std::to_string(width) + " x " + std::to_string(height) + (sizeof(Number) == 4 ? " float" : " double");
    const auto count = static_cast<std::size_t>(width) * height;
    std::vector<Number> image = noise<Number>(count), in(count), out((static_cast<std::size_t>(width) + 2) * height);
    const measured_plan<Number> plan(width, height, in.data(), out.data());
    in = image;
    bench::contest contest;
    contest.add("two passes over memory, " + name, [&] { two_copies(image); });
    contest.add("forward, " + name, [&] { primitives::forward_fft(image, width, height); });
    contest.add("back, " + name, [&] { primitives::inverse_fft(image, width, height); });
    contest.add("FFTW, measured plan, " + name, [&] { plan.run(); });
    contest.run(7);
    const double library = contest.best("FFTW, measured plan, " + name);
    verdict.at_most("forward / FFTW, " + name, contest.best("forward, " + name) / library, limit);
    verdict.at_most("back / FFTW, " + name, contest.best("back, " + name) / library, limit);
}

/// Waves on a tilt with a little noise, as surfaces are: neighbours are often equal.
std::vector<std::int16_t> surface(std::size_t side)
{
    std::vector<std::int16_t> out = noise<std::int16_t>(side * side);
    for (std::size_t i = 0; i < out.size(); ++i) {
        const auto x = static_cast<double>(i % side), y = static_cast<double>(i / side);
        out[i] = static_cast<std::int16_t>(9000.0 * std::sin(x * 0.011) * std::cos(y * 0.007) + 2.5 * (x - y) +
                                           (out[i] & 0xff));
    }
    return out;
}

/// An addition for each sample, into tables that stay in the nearest cache.
std::uint32_t count_nearby(std::span<const std::int16_t> samples)
{
    static std::uint32_t tables[4][1024];
    for (std::size_t i = 0; i + 4 <= samples.size(); i += 4)
        for (std::size_t k = 0; k < 4; ++k) ++tables[k][static_cast<std::uint16_t>(samples[i + k]) & 1023];
    return tables[0][0];
}

void histograms(bench::verdict& verdict, const std::string& name, const std::vector<std::int16_t>& samples)
{
    std::vector<std::uint32_t> table(primitives::heightCount);
    cv::Mat image(1, static_cast<int>(samples.size()), CV_16UC1,
                  const_cast<std::int16_t*>(samples.data())); // counted as unsigned numbers: as much work
    volatile std::uint32_t kept = 0;
    bench::contest contest;
    contest.add("additions alone, " + name, [&] { kept = count_nearby(samples); });
    contest.add("count heights, " + name, [&] {
        std::fill(table.begin(), table.end(), 0u);
        primitives::count_heights(samples, std::span<std::uint32_t, primitives::heightCount>(table));
        kept = table[0];
    });
    contest.add("histogram of 2048 bins, " + name,
                [&] { kept = spectra::make_histogram(samples, VLAxis(0.0, 0.01, "nm")).peakCount; });
    contest.add("OpenCV, " + name, [&] {
        const int bins = static_cast<int>(primitives::heightCount), channel = 0;
        const float limits[] = {0.0f, 65536.0f};
        const float* ranges = limits;
        cv::Mat counts;
        cv::calcHist(&image, 1, &channel, cv::Mat(), counts, 1, &bins, &ranges);
        kept = static_cast<std::uint32_t>(counts.at<float>(0));
    });
    contest.run(9);
    const double floor = contest.best("additions alone, " + name);
    // A demonstration by hand reached 7.4 / 4.7 of the additions, where OpenCV takes 40.
    verdict.at_most("count heights / additions alone, " + name, contest.best("count heights, " + name) / floor, 1.6);
    verdict.at_most("histogram of 2048 bins / additions alone, " + name,
                    contest.best("histogram of 2048 bins, " + name) / floor, 1.7);
}

} // namespace

int main()
{
    bench::verdict verdict;
    histograms(verdict, "noise", noise<std::int16_t>(4096 * 4096));
    histograms(verdict, "surface", surface(4096));
    histograms(verdict, "flat", std::vector<std::int16_t>(4096 * 4096, 77));
    // A demonstration by hand reached 63 / 69 of FFTW in single precision and 91 / 133 in double.
    transforms<float>(verdict, 4096, 4096, 63.0 / 69.0 * 1.15);
    transforms<double>(verdict, 4096, 4096, 91.0 / 133.0 * 1.15);
    for (const auto& [width, height] : {std::pair(1021, 1021), std::pair(1000, 999)}) {
        transforms<float>(verdict, width, height, 63.0 / 69.0);
        transforms<double>(verdict, width, height, 91.0 / 133.0);
    }
    return verdict.exit_status();
}
