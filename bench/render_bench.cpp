// The path from samples to pixels, 4096 x 4096, against what its bytes alone cost and against OpenCV on one thread.
#include "primitives/cpu.h"
#include "primitives/map/range.h"
#include "primitives/simd/kernels.h"
#include "ratio.h"
#include "render_floor.h"
#include "view/Scale.h"
#include "view/scale/render.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <span>

using namespace vldv;

namespace {

constexpr int side = 4096;
constexpr std::size_t samplesTotal = std::size_t{side} * side;

struct released {
    void operator()(void* block) const { std::free(block); }
};
template <class T>
using page_block = std::unique_ptr<T[], released>;

/// Pages that exist already, so that no page fault is measured.
template <class T>
page_block<T> make_block(std::size_t count)
{
    constexpr std::size_t hugePage = std::size_t{1} << 21;
    void* block = std::aligned_alloc(hugePage, (count * sizeof(T) + hugePage - 1) / hugePage * hugePage);
    std::memset(block, 0x5a, count * sizeof(T));
    return page_block<T>(static_cast<T*>(block));
}

/// Waves on a tilt with noise, over most of the 16 bits.
void fill(std::int16_t* out)
{
    std::uint32_t noise = 1;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            noise = noise * 1664525u + 1013904223u;
            const double waves = 9000.0 * std::sin(x * 0.011) * std::cos(y * 0.007);
            *out++ = static_cast<std::int16_t>(waves + 4.0 * (x - y) + static_cast<double>(noise >> 22));
        }
}

/// The same picture with a library's whole-array operations; its buffers are kept between the runs.
class opencv_peer {
public:
    explicit opencv_peer(std::int16_t* samples) : source(side, side, CV_16SC1, samples), colors(1, 256, CV_8UC4)
    {
        for (int i = 0; i < 256; ++i)
            colors.at<cv::Vec4b>(0, i) = cv::Vec4b(static_cast<std::uint8_t>(255 - i), static_cast<std::uint8_t>(i),
                                                   static_cast<std::uint8_t>(i / 2), 0);
    }
    void draw()
    {
        double low = 0.0, high = 0.0;
        cv::minMaxLoc(source, &low, &high);
        source.convertTo(bytes, CV_8U, 255.0 / (high - low), -low * 255.0 / (high - low));
        cv::cvtColor(bytes, spread, cv::COLOR_GRAY2BGRA); // a table of colours wants as many channels
        cv::LUT(spread, colors, pixels);
    }

private:
    cv::Mat source, bytes, spread, pixels, colors;
};

/// The drawing of mode 1 as a machine without AVX-512 makes it.
void draw_avx2(std::span<const std::int16_t> samples, std::uint8_t* pixels)
{
    const std::span<const primitives::kernel_table> sets = primitives::available_kernels();
    const primitives::kernel_table& avx2 = sets[std::min<std::size_t>(1, sets.size() - 1)];
    static const primitives::color_lookup colors = view::make_lookup(view::built_in_palette(3), false);
    static std::uint8_t bytes[side];
    const primitives::height_range range = avx2.findRange(samples.data(), samples.size());
    const primitives::byte_window window{static_cast<float>(range.minimum), static_cast<float>(range.maximum)};
    for (; !samples.empty(); samples = samples.subspan(side), pixels += 4 * side) {
        avx2.mapHeights(samples.data(), side, window, bytes);
        avx2.paint32(bytes, side, colors, pixels);
    }
}

void demand(const bench::contest& results)
{
    const double floor = results.best("range pass + stream 2 to 4 bytes");
    const double stream = results.best("stream 2 to 4 bytes");
    const double automatic = results.best("DrawImage, autoscaling, 32-bit");
    bench::verdict verdict;
    verdict.at_most("DrawImage autoscaling / (range + stream)", automatic / floor, primitives::has_vbmi() ? 1.6 : 2.5);
    verdict.at_most("the same with AVX2 kernels", results.best("autoscaling, 32-bit, AVX2 kernels") / floor, 2.5);
    verdict.at_least("OpenCV / DrawImage autoscaling", results.best("OpenCV minMaxLoc, convertTo, LUT") / automatic,
                     3.0);
    verdict.at_most("DrawImage per line / stream", results.best("DrawImage, per line, 32-bit") / stream, 3.0);
    verdict.at_most("DrawImage per line, planefit / stream", results.best("DrawImage, planefit, 32-bit") / stream, 3.0);
    verdict.at_least("read loop / find_range", results.best("read every sample") / results.best("find_range"), 0.8);
    std::exit(verdict.exit_status());
}

} // namespace

int main()
{
    cv::setNumThreads(1);
    const auto samples = make_block<std::int16_t>(samplesTotal);
    const auto pixels = make_block<std::uint8_t>(4 * samplesTotal);
    fill(samples.get());
    const std::span<const std::int16_t> all(samples.get(), samplesTotal);
    opencv_peer peer(samples.get());
    CScale scale;
    const VLAxis zAxis(0.0, 0.01, "nm");
    const auto draw = [&](int mode, bool rgb32) {
        scale.SetAutoScaling(mode);
        scale.DrawImage(pixels.get(), samples.get(), 2 * side, {side, side}, zAxis, false, false, nullptr, rgb32,
                        nullptr, nullptr);
    };
    volatile std::int64_t kept = 0;

    bench::contest contest;
    contest.add("read every sample", [&] { kept = bench::read_all(all); });
    contest.add("find_range", [&] { kept = primitives::find_range(all).maximum; });
    contest.add("stream 2 to 4 bytes", [&] { bench::stream_pixels(all, pixels.get()); });
    contest.add("range pass + stream 2 to 4 bytes", [&] {
        kept = bench::plain_range(all);
        bench::stream_pixels(all, pixels.get());
    });
    contest.add("DrawImage, autoscaling, 32-bit", [&] { draw(1, true); });
    contest.add("DrawImage, per line, 32-bit", [&] { draw(2, true); });
    contest.add("DrawImage, planefit, 32-bit", [&] { draw(3, true); });
    contest.add("DrawImage, fixed window, 32-bit", [&] { draw(0, true); });
    contest.add("DrawImage, autoscaling, 24-bit", [&] { draw(1, false); });
    contest.add("autoscaling, 32-bit, AVX2 kernels", [&] { draw_avx2(all, pixels.get()); });
    contest.add("OpenCV minMaxLoc, convertTo, LUT", [&] { peer.draw(); });
    contest.run(25);
    demand(contest);
}
