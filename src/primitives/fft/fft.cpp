#include "primitives/fft/fft.h"

#include "primitives/fft/fft_tiles.h"
#include "primitives/simd/kernels.h"

#include <algorithm>
#include <atomic>
#include <cassert>
#include <thread>

namespace vldv::primitives {

namespace fft {

namespace {

/// Runs the tasks of a step, each once, on as many threads as there is work space for.
template <class Number>
void run_tasks(void (*kernel)(const image_step<Number>&, int, Number*), const image_step<Number>& step, int tasks,
               std::span<const aligned_numbers<Number>> space)
{
    // A counter hands the tasks out, so that a thread which the system holds up only does fewer. Tasks share no
    // numbers: the result does not depend on who did which.
    std::atomic<int> next = 0;
    const auto work = [&](Number* mine) {
        for (int number = next++; number < tasks; number = next++) kernel(step, number, mine);
    };
    std::vector<std::jthread> helpers;
    try {
        helpers.reserve(space.size() - 1);
        for (std::size_t i = 1; i < space.size() && static_cast<int>(i) < tasks; ++i)
            helpers.emplace_back(work, space[i].data());
    } catch (const std::exception&) {
        // No more threads to be had: those that run do the work.
    }
    work(space[0].data());
}

} // namespace

template <class Number>
void transform_image(const tile_kernels<Number>& kernels, Number* image, int width, int height, bool inverse,
                     unsigned threads)
{
    const plan<Number> rowPlan(width), columnPlan(height);
    std::vector<aligned_numbers<Number>> space;
    const auto useful = static_cast<unsigned>(std::max(row_tasks<Number>(height), column_tasks<Number>(width)));
    const auto tilesUsed = static_cast<std::size_t>(std::min(tilesOfGroup, paired_columns(width) / lanes<Number> + 1));
    for (unsigned i = 0; i < std::clamp(threads, 1u, useful); ++i)
        space.emplace_back(std::max(rowPlan.tileNumbers(), tilesUsed * columnPlan.tileNumbers()));
    // The rows leave out a factor 1/2, and so do the columns that share a lane.
    const double count = static_cast<double>(width) * height;
    const auto scale = static_cast<Number>(inverse ? 1.0 : 0.5 / count);
    const auto columnStride = static_cast<std::ptrdiff_t>(columnPlan.tileNumbers());
    const image_step<Number> rowStep{image, width, height, rowPlan.view(), 0, inverse, scale};
    const image_step<Number> columnStep{image, width, height, columnPlan.view(), columnStride, inverse, scale};
    const std::span<const aligned_numbers<Number>> all(space);
    // Forward the rows go first: they turn plain numbers into half spectra in the image's own memory, which the columns
    // then transform. The way back undoes the two in the opposite order.
    if (!inverse) run_tasks(kernels.rows, rowStep, row_tasks<Number>(height), all);
    run_tasks(kernels.columns, columnStep, column_tasks<Number>(width), all);
    if (inverse) run_tasks(kernels.rows, rowStep, row_tasks<Number>(height), all);
}

template void transform_image(const tile_kernels<float>&, float*, int, int, bool, unsigned);
template void transform_image(const tile_kernels<double>&, double*, int, int, bool, unsigned);

} // namespace fft

namespace {

template <class Number>
void run(std::span<Number> image, int width, int height, bool inverse, unsigned threads)
{
    assert(width >= 0 && height >= 0 && image.size() == std::size_t(width) * std::size_t(height));
    if (!image.empty())
        fft::transform_image(kernels().transforms<Number>(), image.data(), width, height, inverse, threads);
}

} // namespace

void forward_fft(std::span<float> image, int width, int height, unsigned threads)
{
    run(image, width, height, false, threads);
}

void forward_fft(std::span<double> image, int width, int height, unsigned threads)
{
    run(image, width, height, false, threads);
}

void inverse_fft(std::span<float> spectrum, int width, int height, unsigned threads)
{
    run(spectrum, width, height, true, threads);
}

void inverse_fft(std::span<double> spectrum, int width, int height, unsigned threads)
{
    run(spectrum, width, height, true, threads);
}

} // namespace vldv::primitives
