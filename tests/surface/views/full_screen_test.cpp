// A view that fills the screen stays there, whatever happens to its data or to the frame that it has left.
#include "surface/surface_fixture.h"

#include "document/update_hints.h"
#include "platform/app/keys.h"

namespace {

TEST_F(SurfaceTest, AFullScreenStaysThroughChangesOfDataAndFrame)
{
    SPMDataStream both = slope();
    both.set_array_len(2 * 40 * 20);
    CSurfMathView& view = open(both);
    CFrameWnd& frame = *app.frames().front();
    const CRect usual = view.GetClientRect();
    host.display.rects = {CRect(0, 0, 1600, 1000)};
    view.SwitchFullScreen();
    const CRect wholeScreen = host.display.rects[0];
    const std::pair<const char*, std::function<void()>> changes[] = {
        {"another sub-image", [&] { view.OnKeyDown(VK_TAB); }},
        {"samples", [&] { document->UpdateAllViews(nullptr, document::data_hint(0)); }},
        {"scale",
         [&] { document->UpdateAllViews(nullptr, document::hint{document::hintScaleChanged, 0, true}.packed()); }},
        {"option", [&] { view.setOption("invert", "true"); }},
        {"fewer tabs",
         [&] {
             document->getImage(0).set_array_len(40 * 20);
             document->UpdateAllViews(nullptr, document::data_hint(0));
         }},
        {"frame", [&] { frame.MoveWindow({5, 5, 305, 305}); }},
    };
    for (const auto& [name, change] : changes) {
        change();
        host.pump();
        view.flushTimers();
        EXPECT_EQ(CHeadlessHost::windowOf(view).rect, wholeScreen) << name;
        EXPECT_TRUE(view.fullscreenOn && CHeadlessHost::windowOf(view).fullScreen) << name;
    }
    view.OnKeyDown(VK_ESCAPE);
    host.pump();
    EXPECT_EQ(view.GetClientRect(), usual);
    EXPECT_EQ(CHeadlessHost::windowOf(view).rect, frame.viewRect()) << "in a frame that has no tabs by now";
}

} // namespace
