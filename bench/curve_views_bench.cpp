// Windows on curves: what a drag of a section, a refresh of long records and a moved mark cost, against what reading
// the samples and painting as many lines costs alone.
#include "curves/figures/display/curve_points.h"
#include "curves/views/SectionView.h"
#include "document/StorageDoc.h"
#include "paint/QtDC.h"
#include "paint/windowless_toolkit.h"
#include "platform/app/keys.h"
#include "ratio.h"
#include "render_floor.h"
#include "support/HeadlessHost.h"
#include "support/streams.h"

#include <cmath>
#include <string>
#include <vector>

using namespace vldv;

namespace {

constexpr CSize dotsAnInch{96, 96};

unsigned noise_of(unsigned i) { return (i * 2654435761u) >> 22; }

/// A record whose noise fills a part of each column.
int rough(unsigned i) { return static_cast<int>(12000.0 * std::sin(i * 1e-5) + noise_of(i)); }

constexpr int side = 4096;

int waves_on_a_tilt(unsigned i)
{
    const int x = static_cast<int>(i % side), y = static_cast<int>(i / side % side);
    return static_cast<int>(9000.0 * std::sin(x * 0.011) * std::cos(y * 0.007) + 2.5 * (x - y) + noise_of(i));
}

/// A window on an image, painted in memory as the workstation paints it.
class painted_window {
public:
    painted_window(CStorageDoc& document, CSize size, std::initializer_list<curves::grid_point> points)
        : reference(dotsAnInch)
    {
        document.AddView(&view);
        unsigned index = 0;
        for (const curves::grid_point& point : points) view.setPoint(index++, point);
        view.Create(nullptr, view.kind());
        view.OnInitialUpdate();
        view.image.Init(&reference); // a window without a screen would only keep a list of what is drawn
        view.MoveWindow(CRect({0, 0}, size));
        view.OnSize(size);
        screen.Init(&reference);
        screen.Create(size.cx, size.cy, false);
        paint();
    }
    ~painted_window() { view.GetDocument()->RemoveView(&view); }
    painted_window(const painted_window&) = delete;
    painted_window& operator=(const painted_window&) = delete;

    /// The window as it is, while the pointer is still moving.
    void paintQuick() { view.DrawView(screen.dc()); }
    /// The fine drawing, and the window.
    void paint()
    {
        view.flushTimers();
        view.DrawView(screen.dc());
    }

    CSectionView view;

private:
    paint::CQtDC reference;
    VLDIBImage screen;
};

struct open_program {
    open_program() { document.autoDelete = false; }
    unsigned add(const SPMDataStream& stream)
    {
        document.AddNewImages(&stream, 1);
        return document.getImagesNumber() - 1;
    }
    CHeadlessHost host;
    CWinApp app{host};
    CStorageDoc document;
};

/// Paints the lines of curves as they stand, and nothing else.
class line_floor {
public:
    line_floor(CSize size, const curves::profile& section, std::span<const unsigned> shown)
        : reference(dotsAnInch), room(size)
    {
        picture.Init(&reference);
        picture.Create(size.cx, size.cy, true);
        CMinMaxInfo range;
        range.Readjust(section.samples.data(), static_cast<unsigned>(section.samples.size()));
        const curves::curve_pane pane = curves::make_pane(size, section.length, range, VLAxis(0, 1, "nm"), 0.0, {});
        for (const unsigned each : shown)
            curves::curve_points(section.curve(each), pane, 0, {0, 0}, lines.emplace_back());
    }
    void paint()
    {
        picture.dc()->FillSolidRect(CRect({0, 0}, room), 0xffffff);
        picture.dc()->SelectObject(CPen::solid(1, 0x008000));
        for (const std::vector<CPoint>& line : lines) picture.dc()->Polyline(line);
    }

private:
    paint::CQtDC reference;
    VLDIBImage picture;
    std::vector<std::vector<CPoint>> lines;
    CSize room;
};

void drag_a_section(bench::verdict& verdict)
{
    open_program program;
    program.add(test_support::made_stream("height", {{side}, {side}}, {}, waves_on_a_tilt, 2));
    painted_window window(program.document, {587, 375}, {{0, 0}, {side - 1, 7}});
    line_floor lines({512, 320}, window.view.getSection(), std::vector<unsigned>{0, 1});
    int step = 0;
    const auto drag = [&] {
        ++step;
        window.view.SetPoint(0, step % 50, 10 + step % 40);
        window.view.SetPoint(1, side - 1 - step % 30, 900 + step % 500);
        window.view.reloadSection();
        window.paintQuick();
    };
    bench::contest contest;
    contest.add("paint 2 lines of 512 columns", [&] { lines.paint(); });
    contest.add("drag a section of 4096 samples", drag);
    contest.add("  the fine drawing when it rests", [&] { window.paint(); });
    contest.run(40);
    window.view.setOption("profile.width", "16");
    bench::contest wide;
    wide.add("drag a section of 33 lines", drag);
    wide.run(40);
    const double narrow = contest.best("drag a section of 4096 samples");
    verdict.at_most("drag a section, ms", narrow, 4.0);
    verdict.at_most("drag a section / twice painting its lines",
                    narrow / (2 * contest.best("paint 2 lines of 512 columns")), 4.0);
    verdict.at_most("drag a section of 33 lines, ms", wide.best("drag a section of 33 lines"), 12.0);
}

void refresh_long_records(bench::verdict& verdict)
{
    constexpr unsigned length = 1u << 20, count = 4;
    constexpr CSize pane{1000, 400};
    open_program program;
    program.add(test_support::made_stream("record", {{length}}, {}, rough, count));
    painted_window window(program.document, {pane.cx + 75, pane.cy + 55}, {});
    const auto* const samples = static_cast<const std::int16_t*>(program.document.getImage(0).array_data());
    line_floor lines(pane, window.view.getSection(), std::vector<unsigned>{0, 1, 2, 3});
    volatile std::int64_t kept = 0;
    bench::contest contest;
    contest.add("read 4 x 2^20 samples", [&] { kept = bench::read_all({samples, std::size_t{length} * count}); });
    contest.add("paint 4 lines of 1000 columns", [&] { lines.paint(); });
    contest.add("refresh 4 records of 2^20 samples", [&] {
        window.view.RefreshDisplay();
        window.paint();
    });
    contest.run(40);
    const double refresh = contest.best("refresh 4 records of 2^20 samples");
    const double least = contest.best("read 4 x 2^20 samples") + 2 * contest.best("paint 4 lines of 1000 columns");
    verdict.at_most("refresh long records, ms", refresh, 12.0);
    verdict.at_most("refresh long records / reading and painting twice", refresh / least, 3.0);
}

int area(const CRgn& region)
{
    int pixels = 0;
    for (const CRect& part : region.rectangles()) pixels += part.Width() * part.Height();
    return pixels;
}

/// A mark that is dragged repaints its old and new line and the text below.
void count_repainted_pixels(bench::verdict& verdict)
{
    constexpr unsigned length = 1u << 20;
    constexpr CSize size{1075, 455};
    open_program program;
    program.add(test_support::made_stream("record", {{length}}, {}, rough));
    painted_window window(program.document, size, {});
    CSectionView& view = window.view;
    HeadlessWindow& peer = CHeadlessHost::windowOf(view);
    const CRect pane = view.displayRect;
    const auto at = [&pane](int x) { return CPoint{pane.left + x, pane.top + 100}; };
    view.OnMouseMove(0, at(100));
    view.OnLButtonDown(MK_LBUTTON, at(100));
    int most = 0, refreshes = 0;
    for (int x = 110; x < 900; x += 10) {
        peer.invalid = CRgn();
        peer.timers.clear();
        view.OnMouseMove(MK_LBUTTON, at(x));
        most = std::max(most, area(peer.invalid));
        refreshes += static_cast<int>(peer.timers.size());
    }
    view.OnLButtonUp(MK_LBUTTON, at(900));
    const int text = (pane.Width() + 25) * 45; // below the pane, to the right margin
    constexpr int stripe = 9;                  // a line with its dot
    std::printf("dragging a mark over %d pixels\n", pane.Width() * pane.Height());
    verdict.at_most("  pixels repainted by a step, most", most, text + 2 * stripe * (pane.Height() + stripe));
    verdict.at_least("  pixels repainted by a step, most", most, 2 * pane.Height());
    verdict.at_most("  curves drawn anew, times", refreshes, 0);
}

/// 4096 curves of a map: opening, and turning to another while pairs are shown.
void turn_in_a_map(bench::verdict& verdict)
{
    constexpr unsigned length = 512, count = 4096;
    open_program program;
    program.add(test_support::made_stream("curves", {{length}}, {}, rough, count));
    painted_window window(program.document, {587, 375}, {});
    CSectionView& view = window.view;
    const auto* const samples = static_cast<const std::int16_t*>(program.document.getImage(0).array_data());
    line_floor lines({512, 320}, window.view.getSection(), std::vector<unsigned>{0, 1});
    volatile std::int64_t kept = 0;
    unsigned shown = 0;
    const auto turn = [&] {
        shown = (shown + 2) % count;
        view.setActiveSubimage(shown);
        window.paint();
    };
    bench::contest all;
    all.add("turn to another of 4096 curves, all shown", turn);
    all.run(3);
    view.setOption("show_only", "Active trace-retrace");
    window.paint();
    bench::contest contest;
    contest.add("read 4096 x 512 samples", [&] { kept = bench::read_all({samples, std::size_t{length} * count}); });
    contest.add("paint 2 lines of 512 columns", [&] { lines.paint(); });
    contest.add("turn to another pair of 4096 curves", turn);
    contest.run(40);
    const double least = contest.best("read 4096 x 512 samples") + 2 * contest.best("paint 2 lines of 512 columns");
    verdict.at_most("turn to another pair / reading all, painting twice",
                    contest.best("turn to another pair of 4096 curves") / least, 3.0);
}

} // namespace

int main()
{
    paint::start_windowless_toolkit();
    bench::verdict verdict;
    drag_a_section(verdict);
    refresh_long_records(verdict);
    count_repainted_pixels(verdict);
    turn_in_a_map(verdict);
    return verdict.exit_status();
}
