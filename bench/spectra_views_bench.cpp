// Windows on spectra, features and distributions of 4096 x 4096 samples: what opening, an edit, a moved level, a stroke
// of the brush, sorting and a dragged delimiter cost beside the computing alone.
#include "document/StorageDoc.h"
#include "document/update_hints.h"
#include "memory_growth.h"
#include "paint/QtDC.h"
#include "paint/windowless_toolkit.h"
#include "platform/app/keys.h"
#include "primitives/fft/fft.h"
#include "ratio.h"
#include "resources/commands.h"
#include "spectra/figures/features/feature_filter.h"
#include "spectra/figures/features/feature_search.h"
#include "spectra/figures/histogram.h"
#include "spectra/views/FeaturesHistogramView.h"
#include "spectra/views/FeaturesTableView.h"
#include "spectra/views/FourierView.h"
#include "support/HeadlessHost.h"
#include "support/streams.h"
#include "surface/views/SurfMathView.h"

#include <cmath>
#include <memory>
#include <span>
#include <string>
#include <vector>

using namespace vldv;

namespace {

constexpr int side = 4096;
constexpr CSize windowSize{800, 800}, dotsAnInch{96, 96};

unsigned noise_of(unsigned i) { return (i * 2654435761u) >> 24; }

int waves(unsigned i)
{
    const unsigned x = i % side, y = i / side;
    return static_cast<int>(9000.0 * std::sin(x * 0.11) * std::cos(y * 0.07) + noise_of(i));
}

/// Hills in squares of 13 samples: 99,225 of them.
int hills(unsigned i)
{
    const int x = static_cast<int>(i % side) % 13 - 6, y = static_cast<int>(i / side) % 13 - 6;
    const int top = 8000 + static_cast<int>(noise_of(i % side / 13 * 331 + i / side / 13));
    return std::max(0, top - 900 * (x * x + y * y) / 4);
}

struct open_program {
    explicit open_program(int (*sampleAt)(unsigned))
    {
        document.autoDelete = false;
        const SPMDataStream stream =
            test_support::made_stream("height", {{side, VLAxis(0, 1, "nm")}, {side, VLAxis(0, 1, "nm")}}, {}, sampleAt);
        document.AddNewImages(&stream, 1);
    }
    std::span<const short> samples() const
    {
        return {static_cast<const short*>(document.getImageDataS(0, 0)), std::size_t{side} * side};
    }
    CHeadlessHost host;
    CWinApp app{host};
    CStorageDoc document;
};

/// A window on the document, painted in memory as the workstation paints it.
template <class View>
class painted_window {
public:
    explicit painted_window(CStorageDoc& document) : reference(dotsAnInch)
    {
        document.AddView(&view);
        view.Create(nullptr, view.kind());
        view.OnInitialUpdate();
        if constexpr (requires { view.image; }) view.image.Init(&reference);
        view.MoveWindow(CRect({0, 0}, windowSize));
        view.OnSize(windowSize);
        screen.Init(&reference);
        screen.Create(windowSize.cx, windowSize.cy, false);
        view.flushTimers();
        paint();
    }
    ~painted_window()
    {
        if (view.GetDocument()) view.GetDocument()->RemoveView(&view);
    }
    painted_window(const painted_window&) = delete;
    painted_window& operator=(const painted_window&) = delete;

    /// What the window has to paint.
    void paint()
    {
        CRgn& invalid = CHeadlessHost::windowOf(view).invalid;
        const int saved = screen.dc()->SaveDC();
        screen.dc()->IntersectClipRect(invalid.GetRgnBox());
        view.DrawView(screen.dc());
        screen.dc()->RestoreDC(saved);
        invalid = CRgn();
    }
    View view;

private:
    paint::CQtDC reference;
    VLDIBImage screen;
};

void spectra(bench::verdict& verdict)
{
    open_program program(waves);
    std::vector<float> image(program.samples().begin(), program.samples().end());
    bench::contest opening;
    opening.add("transform, 4096 x 4096 float", [&] { primitives::forward_fft(image, side, side); });
    opening.add("  and back", [&] { primitives::inverse_fft(image, side, side); });
    opening.add("open the window on a spectrum", [&] { const painted_window<CFourierView> window(program.document); });
    opening.run(3, bench::process_milliseconds);
    const double transform = opening.best("transform, 4096 x 4096 float");
    verdict.at_most("open / transform", opening.best("open the window on a spectrum") / transform, 1.6);

    const double floats = 4e-6 * side * side;
    std::unique_ptr<painted_window<CFourierView>> window;
    const double grown =
        bench::memory_growth([&] { window = std::make_unique<painted_window<CFourierView>>(program.document); });
    verdict.at_most("memory of the window / image as floats", grown / floats, 3.0);
    CFourierView& view = window->view;
    const CPoint middle = view.displayRect.CenterPoint();
    view.OnMouseMove(0, middle + CSize{20, 20});
    view.OnLButtonDown(MK_LBUTTON, middle + CSize{20, 20});
    view.OnMouseMove(MK_LBUTTON, middle + CSize{60, 60});
    view.OnLButtonUp(0, middle + CSize{60, 60});
    bench::contest editing;
    editing.add("an edit with its way back", [&] {
        view.OnCmdMsg(commands::decrease, nullptr);
        view.flushTimers();
        window->paint();
    });
    editing.run(3, bench::process_milliseconds);
    verdict.at_most("edit / transform", editing.best("an edit with its way back") / transform, 2.5);
    window.reset();
    const double left = bench::memory_growth([] {});
    verdict.at_most("growth after it is closed, MB", left, 1.0);
}

/// The window on features, with its table and the surface that it draws on.
struct open_features {
    open_features() : program(hills), surface(program.document), features(program.document), table(program.document)
    {
        features.view.setOption("threshold.mode", "Manual");
        features.view.setOption("threshold.manual.level", "0.5");
        features.view.OnTimer(2);
        repaint();
    }
    void repaint()
    {
        surface.paint();
        features.paint();
    }
    struct shown_table {
        explicit shown_table(CStorageDoc& document)
        {
            document.AddView(&view);
            view.Create(nullptr, view.kind());
        }
        ~shown_table() { view.GetDocument()->RemoveView(&view); }
        CFeaturesTableView view;
    };
    void tell(document::feature_hint code, CPoint at)
    {
        features.view.UpdateView(&surface.view, document::hint{code, 0}.packed(), at);
    }
    open_program program;
    painted_window<CSurfMathView> surface;
    painted_window<CFeaturesHistogramView> features;
    shown_table table;
};

void features(bench::verdict& verdict)
{
    open_features open;
    std::printf("%zu features\n", open.features.view.features().size());
    const primitives::const_height_block heights{open.program.samples().data(), side, side, 2 * side};
    const spectra::measured_block block(heights, CRect(0, 0, side, side), {});
    int step = 0;
    bench::contest level;
    level.add("list the features", [&] {
        const auto found =
            spectra::find_features(block, {}, open.features.view.axes(), {spectra::threshold_mode::manual, 0.5, 0.1});
        if (found.list.features.empty()) std::puts("none");
    });
    level.add("change the level", [&] {
        open.features.view.setOption("threshold.manual.level", ++step % 2 ? "0.51" : "0.5");
        open.features.view.OnTimer(2);
        open.repaint();
    });
    level.run(5, bench::process_milliseconds);
    verdict.at_most("change of the level / listing", level.best("change the level") / level.best("list the features"),
                    3.0);

    std::vector<Feature> all = open.features.view.features();
    bench::contest sorting;
    sorting.add("sort the rows", [&] { spectra::sort_features(all, 2 + step++ % 3, step % 2 == 0); });
    sorting.add("sort by a heading, with all windows", [&] {
        open.table.view.OnTableHeading(static_cast<unsigned>(2 + step++ % 3));
        open.repaint();
    });
    sorting.run(6);
    verdict.at_most("sort, ms", sorting.best("sort the rows"), 60.0);

    open.features.view.setOption("brush_radius", "12");
    open.tell(document::hintIncludePress, {100, 100});
    open.repaint();
    bench::contest brush;
    brush.add("a step of the brush", [&] {
        ++step;
        open.tell(document::hintIncludeDrag, {100 + step % 7 * 20, 100 + step % 11 * 20});
        open.repaint();
    });
    brush.run(40);
    verdict.at_most("step of the brush, ms", brush.best("a step of the brush"), 4.0);
}

void delimiters(bench::verdict& verdict)
{
    open_program program(waves);
    painted_window<CHistogramView> window(program.document);
    CHistogramView& view = window.view;
    const CRect pane = view.displayRect;
    const auto at = [&](double share) {
        return CPoint{pane.left + static_cast<int>(share * pane.Width()), pane.top + 9};
    };
    view.OnMouseMove(0, at(0.25));
    view.OnLButtonDown(MK_LBUTTON, at(0.25));
    int step = 0;
    bench::contest contest;
    contest.add("count the samples", [&] {
        if (spectra::count_frame(program.samples()).total == 0) std::puts("none");
    });
    contest.add("drag a delimiter", [&] {
        ++step;
        view.OnMouseMove(MK_LBUTTON, at(0.25 + 0.01 * (step % 20)));
        window.paint();
    });
    contest.run(20);
    verdict.at_most("drag / counting", contest.best("drag a delimiter") / contest.best("count the samples"), 0.25);
}

} // namespace

int main(int argc, char** argv)
{
    paint::windowless_toolkit toolkit(argc, argv);
    bench::verdict verdict;
    spectra(verdict);
    features(verdict);
    delimiters(verdict);
    return verdict.exit_status();
}
