// A maximised window gets no new size when its margins change, but what they leave has to be taken up all the same.
#include "surface/surface_fixture.h"

#include "document/update_hints.h"

#include <array>
#include <set>

namespace {

class MaximisedSurface : public SurfaceTest {
protected:
    MaximisedSurface()
    {
        CHeadlessHost::windowOf(*app.frames().front()).maximize(host.area);
        settle();
    }
    void settle()
    {
        host.pump();
        view.flushTimers();
        CHeadlessHost::windowOf(view).invalid = CRgn();
    }
    std::array<int, 4> margins() const
    {
        return {int(view.options["LeftMargin"]), int(view.options["TopMargin"]), int(view.options["RightMargin"]),
                int(view.options["BottomMargin"])};
    }
    /// The picture of 40 by 20 samples fills the room that the margins leave, in its shape, in the middle, and was
    /// rendered at that size.
    void expectPictureFits()
    {
        const CSize client = view.GetClientRect().Size();
        const auto [left, top, right, bottom] = margins();
        const int roomX = client.cx - left - right, roomY = client.cy - top - bottom;
        const int width = std::min(roomX, 2 * roomY);
        EXPECT_NEAR(view.displayRect.Width(), width, 1);
        EXPECT_NEAR(view.displayRect.Height(), width / 2, 1);
        EXPECT_NEAR(view.displayRect.left + view.displayRect.right, left + client.cx - right, 2);
        EXPECT_NEAR(view.displayRect.top + view.displayRect.bottom, top + client.cy - bottom, 2);
        const CRgn& invalid = CHeadlessHost::windowOf(view).invalid;
        view.flushTimers();
        EXPECT_EQ(CSize({view.image.width(), view.image.height()}), view.displayRect.Size()) << "rendered";
        EXPECT_EQ(invalid.GetRgnBox(), view.GetClientRect()) << "and painted with the margins";
    }
    /// Another value than the present one, as text; empty where there is none.
    static std::string otherValue(const SPMVar& option)
    {
        if (option.type == SPM_VAR_BOOLEAN) return static_cast<bool>(option) ? "false" : "true";
        if (option.type == SPM_VAR_INT) return std::to_string(int(option) + 37);
        if (option.type != SPM_VAR_ENUM || option.get_enum_size() < 2) return {};
        return option.get_enum_key((static_cast<unsigned>(int(option)) + 1) % option.get_enum_size());
    }
    CSurfMathView& view = open();
};

TEST_F(MaximisedSurface, EveryOptionThatMovesMarginsMovesThePicture)
{
    view.setOption("ShowParameters", "true"); // so that its width counts
    settle();
    std::set<std::string> movers;
    std::vector<std::string> names;
    for (const SPMVar& option : view.options.all())
        if (*option.get_description()) names.emplace_back(option.get_name());
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        const std::string before = view.options[name].as_string().c_str(), other = otherValue(view.options[name]);
        const auto room = margins();
        if (other.empty() || !view.setOption(name.c_str(), other.c_str())) continue;
        if (margins() != room) {
            movers.insert(name);
            expectPictureFits();
            EXPECT_EQ(view.GetClientRect().Size(), (CSize{1600 - 8, 900 - 28})) << "still maximised";
        }
        settle();
        view.setOption(name.c_str(), before.c_str());
        settle();
    }
    EXPECT_EQ(movers,
              (std::set<std::string>{"ShowLegend", "CompactLegend", "ShowZScaleOpt", "ShowAdditionalLegend",
                                     "ShowParameters", "ParametersWidth", "TextVertSpace", "LeftMarginOpt",
                                     "RightMarginOpt", "TopMarginOpt", "BottomMarginOpt", "highlight", "text_size"}));
    view.setOption("ShowParameters", "false");
    settle();
    view.setOption("ShowStatistics", "true"); // the other one that makes room for the panel
    expectPictureFits();
}

TEST_F(MaximisedSurface, ZoomingThePartShowsItsShapeAndItsZoom)
{
    const std::wstring before = app.frames().front()->GetWindowText();
    view.OnMouseWheel(0, 120, {800, 400});
    EXPECT_NE(app.frames().front()->GetWindowText(), before) << "33 of 40 columns at the same size";
    view.flushTimers();
    EXPECT_EQ(CSize({view.image.width(), view.image.height()}), view.displayRect.Size());
    // 33 by 16 samples in a room of 1592 - 140 by 872 - 75 pixels: 1452 / 33 = 44 is less than 797 / 16.
    EXPECT_EQ(view.displayRect.Size(), (CSize{1452, 704}));
    EXPECT_EQ(app.frames().front()->GetWindowText(), L"a[Height](4400%)");
}

} // namespace
