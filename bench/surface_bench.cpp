// A surface of 4096 x 4096 samples in a window: its picture, its figures and what a drag repaints, against what the
// bytes alone cost.
#include "document/StorageDoc.h"
#include "primitives/fit/plane_moments.h"
#include "ratio.h"
#include "render_floor.h"
#include "support/HeadlessHost.h"
#include "support/streams.h"
#include "surface/figures/measure/statistics.h"
#include "surface/views/SurfMathView.h"
#include "view/scale/render.h"
#include "view/scale/render_step.h"

#include <cmath>
#include <cstdlib>
#include <vector>

using namespace vldv;

namespace {

constexpr int side = 4096, pictureWidth = 1000, pictureHeight = 800;

std::vector<std::int16_t> waves_on_a_tilt()
{
    std::vector<std::int16_t> out;
    out.reserve(std::size_t{side} * side);
    std::uint32_t noise = 1;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            noise = noise * 1664525u + 1013904223u;
            const double height = 9000.0 * std::sin(x * 0.011) * std::cos(y * 0.007) + 2.5 * (x - y);
            out.push_back(static_cast<std::int16_t>(height + static_cast<double>(noise >> 22)));
        }
    return out;
}

/// The rows of the surface that a picture of nearest samples reads, and a store for each of its pixels.
std::int64_t window_floor(std::span<const std::int16_t> samples, std::uint32_t* pixels)
{
    std::int64_t mixed = 0;
    for (int y = 0; y < pictureHeight; ++y) {
        const auto row = static_cast<std::size_t>(y) * side / pictureHeight * side;
        mixed ^= bench::read_all(samples.subspan(row, side));
    }
    const auto value = static_cast<std::uint32_t>(mixed);
    std::fill_n(pixels, pictureWidth * pictureHeight, value);
    return mixed;
}

void measure_times(bench::verdict& verdict)
{
    const std::vector<std::int16_t> samples = waves_on_a_tilt();
    std::vector<std::uint32_t> pixels(pictureWidth * pictureHeight);
    const VLAxis heights(0.0, 0.01, "nm");
    CScale scale;
    scale.SetAutoScaling(view::autoScale);
    view::window_fitter fitter;
    volatile std::int64_t kept = 0;
    // As the view's render step does it.
    const auto render = [&] {
        const CRect window(0, 0, side, side);
        const view::fitted_window shown = fitter.fit(samples.data(), side, window, {pictureWidth, pictureHeight});
        scale.DrawImage({.bits = pixels.data(),
                         .source = shown.samples,
                         .sourceStep = shown.step,
                         .size = {pictureWidth, pictureHeight},
                         .zAxis = &heights,
                         .absolute = true,
                         .range = &shown.range});
    };

    const auto new_means = [&] {
        fitter.forget();
        render();
    };

    bench::contest contest;
    contest.add("read every sample", [&] { kept = bench::read_all(samples); });
    contest.add("read the rows of a window, store its pixels", [&] { kept = window_floor(samples, pixels.data()); });
    contest.add("statistics",
                [&] { kept = static_cast<std::int64_t>(surface::frame_statistics(samples, side, heights).size()); });
    contest.add("render step, kept means", render);
    contest.add("render step, new means", new_means);
    contest.run(25, bench::process_milliseconds);
    bench::contest threads;
    threads.add("  the same on the wall, with several threads", new_means);
    threads.run(50, bench::wall_milliseconds);

    const double pass = contest.best("read every sample");
    const double window = contest.best("read the rows of a window, store its pixels");
    verdict.at_most("statistics / one pass", contest.best("statistics") / pass, 5.0);
    // Colours, palette, scale and overlays change far more often than what is seen of the data.
    verdict.at_most("render step, kept means / window floor", contest.best("render step, kept means") / window, 1.5);
    // Means are made of every sample, once for a window on the data: one pass over them is the least there is.
    verdict.at_most("render step, new means / (pass + window floor)",
                    contest.best("render step, new means") / (pass + window), 2.0);
}

int area(const CRgn& region)
{
    int pixels = 0;
    for (const CRect& part : region.rectangles()) pixels += part.Width() * part.Height();
    return pixels;
}

/// Drags a rectangle over a view and counts the pixels that each step has repainted.
void count_repainted_pixels(bench::verdict& verdict)
{
    CHeadlessHost host;
    CWinApp app(host);
    CStorageDoc document;
    document.autoDelete = false;
    const SPMDataStream stream = test_support::made_stream("height", {{side}, {side}}, {}, [](unsigned) { return 0; });
    document.AddNewImages(&stream, 1);
    CSurfMathView view;
    document.AddView(&view);
    view.Create(nullptr, view.kind());
    view.OnInitialUpdate();
    view.setOption("CompactLegend", "true");
    view.MoveWindow(CRect(0, 0, pictureHeight, pictureHeight));
    host.pump();
    view.flushTimers();

    HeadlessWindow& window = CHeadlessHost::windowOf(view);
    constexpr int start = 200, steps = 40, stride = 5;
    view.OnLButtonDown(MK_LBUTTON, {start, start});
    int most = 0, outsideMost = 0, rendered = 0;
    for (int i = 1; i <= steps; ++i) {
        const CPoint at{start + i * stride, start + i * stride};
        window.invalid = CRgn();
        window.timers.clear();
        view.OnMouseMove(MK_LBUTTON, at);
        // What was drawn and what will be, with its handles of four pixels.
        CRect box(start, start, at.x, at.y);
        constexpr int around = 5;
        box.InflateRect(around, around);
        const CRgn outside = CRgn::combined(window.invalid, CRgn(box), RGN_DIFF);
        most = std::max(most, area(window.invalid));
        outsideMost = std::max(outsideMost, area(outside));
        rendered += static_cast<int>(window.timers.size());
    }
    view.OnLButtonUp(MK_LBUTTON, {start + steps * stride, start + steps * stride});
    constexpr int dragged = steps * stride * steps * stride;
    std::printf("dragging a rectangle of %d pixels in %d\n", dragged, pictureHeight * pictureHeight);
    verdict.at_least("  pixels repainted by the last step", most, dragged);
    verdict.at_most("  pixels repainted by the last step", most, 1.2 * dragged);
    verdict.at_most("  pixels repainted outside of it, most", outsideMost, 0);
    verdict.at_most("  picture rendered anew, times", rendered, 0);
}

} // namespace

int main()
{
    bench::verdict verdict;
    measure_times(verdict);
    count_repainted_pixels(verdict);
    return verdict.exit_status();
}
