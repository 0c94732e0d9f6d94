// Options from a damaged or hostile profile: whatever they say, a window opens and is drawn.
#include "surface/surface_fixture.h"

#include "support/RecordingDC.h"
#include "surface/views/QVSurfView.h"

#include <cmath>
#include <set>

namespace {

class HostileOptions : public SurfaceTest {
protected:
    static std::vector<SPMVar> declared(CDCView& view)
    {
        unsigned count = 0;
        view.GetOptionsList(nullptr, &count);
        std::vector<SPMVar> options(count);
        view.GetOptionsList(options.data(), &count);
        return options;
    }
    static bool isNumber(const SPMVar& option) { return option.type == SPM_VAR_INT || option.type == SPM_VAR_DOUBLE; }
    /// Everything a window of this size can be asked for was drawn, and not more than a person could look at.
    void expectDrawn(CSurfMathView& view, const std::string& value)
    {
        host.pump();
        view.flushTimers();
        const CSize size = view.GetClientRect().Size();
        EXPECT_LE(size.cx, 512 + 2 * 4000) << value;
        EXPECT_LE(size.cy, 512 + 2 * 4000) << value;
        EXPECT_GT(view.displayRect.Width(), 0) << value;
        EXPECT_GT(view.displayRect.Height(), 0) << value;
        RecordingDC dc(size);
        view.OnDraw(dc);
        EXPECT_LT(dc.operations.size(), 20'000u) << value;
        for (const drawn& operation : dc.operations) EXPECT_LE(operation.tools.pen.width, 101) << value;
    }
};

TEST_F(HostileOptions, EveryOptionThatSizesDrawingHasALimit)
{
    // Colours, and a tolerance in samples that smooths a path.
    const std::set<std::string> sizeNothing = {"SelColor", "section.line.color", "lengthy_object.simplify.r"};
    CQVSurfView view; // has those of a surface and its own
    int sized = 0;
    for (const SPMVar& option : declared(view)) {
        if (!isNumber(option) || sizeNothing.contains(option.get_name())) continue;
        EXPECT_TRUE(std::isfinite(option.limits.number.minimum)) << option.get_name();
        EXPECT_TRUE(std::isfinite(option.limits.number.maximum)) << option.get_name();
        const bool isDrawn = std::string_view(option.get_name()).starts_with("tics.");
        EXPECT_LE(option.limits.number.maximum, isDrawn ? 1000.0 : 1e12) << option.get_name();
        ++sized;
    }
    EXPECT_GT(sized, 0);
}

TEST_F(HostileOptions, TheLimitsOfTheMarginsHoldTheSumsOfTheirParts)
{
    CSurfMathView& view = open();
    for (const SPMVar& option : declared(view))
        if (isNumber(option) && option.type == SPM_VAR_INT) view.setOption(option.get_name(), "1e9");
    view.setOption("ShowParameters", "true");
    EXPECT_EQ(int(view.options["LeftMargin"]), 1000);
    EXPECT_EQ(int(view.options["RightMargin"]), 1000 + 65 + 2000) << "its own, the scale, the panel";
    EXPECT_EQ(int(view.options["BottomMargin"]), 1000 + 1000 + 4 * (200 - 13));
}

TEST_F(HostileOptions, AProfileOfAnyNumbersIsTakenWithinThem)
{
    CQVSurfView model;
    const std::vector<SPMVar> options = declared(model);
    for (const char* value : {"2147483647", "1e300", "-1e300", "nan", "inf", "0x7fffffffffffffff", "-2147483648"}) {
        for (const SPMVar& option : options)
            if (isNumber(option)) host.profile().writeString("SurfMathView", option.get_name(), value);
        CSurfMathView& view = open();
        expectDrawn(view, value);
        view.GetParentFrame()->DestroyFrame();
        host.pump();
    }
}

} // namespace
