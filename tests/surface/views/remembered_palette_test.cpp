// The palette that an image keeps is changed by the user's strokes alone.
#include "surface/surface_fixture.h"

#include "document/update_hints.h"
#include "view/scale/PaletteBar.h"

namespace {

/// Surfaces in frames, files that may keep a palette, and the bar of palettes that all views follow.
class RememberedPalette : public SurfaceTest {
protected:
    static constexpr const char *first = "5,1,12.5,-3,nm", *second = "2,0,40,3,nm";

    RememberedPalette()
    {
        bar.scale().createStrip(nullptr);
        bar.OnChangeParentWnd(true);
    }
    CStorageDoc& openWith(const char* name, const char* palette)
    {
        open(slope(), name, {{"palette", palette}});
        return *document;
    }
    static CSurfMathView& viewOf(const CStorageDoc& shown, std::size_t index = 0)
    {
        return dynamic_cast<CSurfMathView&>(*shown.views().at(index));
    }
    static std::string kept(const CStorageDoc& shown) { return shown.getString("palette", 0); }
    CSurfMathView& openSecondView(CStorageDoc& shown)
    {
        surfaces.setOpeningImage(0);
        CFrameWnd* const frame = surfaces.CreateNewFrame(&shown, nullptr);
        surfaces.InitialUpdateFrame(frame, &shown, true);
        host.pump();
        return dynamic_cast<CSurfMathView&>(*frame->GetActiveView());
    }
    static void expectFirst(const CScale& scale)
    {
        EXPECT_EQ(scale.GetPaletteId(), 5);
        EXPECT_TRUE(scale.getInverse());
        EXPECT_EQ(scale.getFixedSize(), 12.5);
        EXPECT_EQ(scale.getFixedStart(), -3.0);
        EXPECT_STREQ(scale.getFixedUnits(), "nm");
    }

    CPaletteBar bar;
};

TEST_F(RememberedPalette, OpeningAndShowingAFileChangesNothing)
{
    CStorageDoc& shown = openWith("a.spm", first);
    const auto expectUntouched = [&](const char* after) {
        host.pump();
        viewOf(shown).flushTimers();
        EXPECT_EQ(kept(shown), first) << after;
        EXPECT_FALSE(shown.IsModified()) << after;
        expectFirst(viewOf(shown).getScale());
    };
    expectUntouched("opening");
    viewOf(shown).SetFocus();
    expectUntouched("activating");
    expectFirst(bar.scale());
    viewOf(shown).CDCView::LoadOptions(nullptr);
    expectUntouched("loading the options again");
    openSecondView(shown);
    expectUntouched("a second window");
    shown.UpdateAllViews(nullptr, document::data_hint(0));
    expectUntouched("new data");
    viewOf(shown).toggle_option("highlight");
    viewOf(shown).toggle_option("highlight");
    expectUntouched("the slope and back");
}

TEST_F(RememberedPalette, OneFileNeverTakesThatOfAnother)
{
    CStorageDoc& a = openWith("a.spm", first);
    viewOf(a).SetFocus();
    CStorageDoc& b = openWith("b.spm", second);
    for (CStorageDoc* const active : {&b, &a, &b}) {
        viewOf(*active).SetFocus();
        EXPECT_EQ(bar.scale().GetPaletteId(), active == &a ? 5 : 2);
        for (const CStorageDoc* const each : {&a, &b}) {
            EXPECT_EQ(kept(*each), each == &a ? first : second);
            EXPECT_FALSE(each->IsModified());
            EXPECT_EQ(viewOf(*each).getScale().GetPaletteId(), each == &a ? 5 : 2);
        }
    }
}

TEST_F(RememberedPalette, AStrokeIsKeptAndReachesTheOtherViewsOfTheImage)
{
    CStorageDoc& shown = openWith("a.spm", first);
    CSurfMathView& other = openSecondView(shown);
    viewOf(shown).SetFocus();
    bar.scale().OnCmdMsg(12008, nullptr);
    EXPECT_EQ(kept(shown), "7,1,12.5,-3,nm");
    EXPECT_TRUE(shown.IsModified());
    shown.UpdateAllViews(nullptr, document::data_hint(0));
    EXPECT_EQ(kept(shown), "7,1,12.5,-3,nm") << "the view without the focus does not write its own";
    EXPECT_EQ(other.getScale().GetPaletteId(), 7);

    ASSERT_TRUE(shown.Revert());
    EXPECT_EQ(kept(shown), first) << "what was in the file";
    EXPECT_FALSE(shown.IsModified());
    for (std::size_t i = 0; i < 2; ++i) expectFirst(viewOf(shown, i).getScale());
}

} // namespace
