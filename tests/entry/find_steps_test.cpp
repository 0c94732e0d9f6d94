// "Find Steps" from the dialog to windows that lead each other.
#include "curves/views/LineView.h"
#include "document/step_texts.h"
#include "document/update_hints.h"
#include "entry_fixture.h"
#include "platform/app/keys.h"
#include "resources/commands.h"
#include "surface/figures/drawing_axes.h"
#include "surface/views/SurfMathView.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace {

constexpr int columns = 64, rows = 40;

/// Where the heights rise, or fall: one column farther to the right every ten lines.
int edge(int row) { return 30 + row / 10; }

class FindSteps : public EntryTest {
protected:
    CSurfMathView& terrace(bool isFalling, const char* before = nullptr)
    {
        const auto heights = [isFalling](unsigned i) {
            const int row = static_cast<int>(i) / columns, column = static_cast<int>(i) % columns;
            return (column >= edge(row)) != isFalling ? 300 : 0;
        };
        const auto made = [&](const char* name) {
            return test_support::made_stream(name, {{columns, VLAxis(100, 2, "nm")}, {rows, VLAxis(50, 3, "nm")}},
                                             VLAxis(0, 1, "nm"), heights);
        };
        CStorageDoc saved;
        for (const char* const name : {before, "Topo"}) {
            if (!name) continue;
            const SPMDataStream stream = made(name);
            saved.AddNewImages(&stream, 1);
        }
        const std::wstring path = (folder / "t.spm").wstring();
        EXPECT_TRUE(saved.OnSaveDocument(path.c_str()));
        document = &opened(path);
        host.pump();
        for (CView* const each : document->views())
            if (auto* const view = dynamic_cast<CSurfMathView*>(each);
                view && view->getImageNumber() == document->getImagesNumber() - 1)
                return *view;
        throw std::runtime_error("no surface");
    }
    /// \return the dialog was shown
    bool find(CSurfMathView& view, const std::function<void(CVarListDlg&)>& use = {}, bool accepts = true)
    {
        bool isShown = false;
        host.onDialog = [&](CVarListDlg& dialog) {
            isShown = true;
            if (use) use(dialog);
            dialog.EndDialog(accepts ? CVarListDlg::resultOk : CVarListDlg::resultCancel);
        };
        view.OnCmdMsg(commands::findSteps, nullptr);
        host.onDialog = {};
        host.pump();
        return isShown;
    }
    bool isEnabled(CSurfMathView& view)
    {
        CCmdUI ui{.m_nID = commands::findSteps};
        view.OnCmdMsg(commands::findSteps, &ui);
        return ui.enabled;
    }
    /// Samples that the mask of the steps covers; -1: there is none.
    int masked(unsigned image = 0)
    {
        for (const auto& [key, group] : document->decorations(image).all())
            for (const auto& each : group.members)
                if (each.name == "steps_mask")
                    return static_cast<int>(std::ranges::count(each.elements.at(0).bytes, 1));
        return -1;
    }
    short value(unsigned image, int row) { return document->getDataPoint1S(image, row, 0); }
    template <class View>
    View* viewOf(unsigned image)
    {
        for (CView* const each : document->views())
            if (auto* const view = dynamic_cast<View*>(each); view && view->getImageNumber() == image) return view;
        return nullptr;
    }
    static double place(const CSectionView& view) { return view.getMarks()[vldv::curves::positionMark].x; }
    /// Puts a crossbar on a sample by the mouse.
    static void drag(CSectionView& view, int sample)
    {
        const CRect& pane = view.displayRect;
        const auto over = [&](double share) {
            return CPoint{pane.left + static_cast<int>(std::lround(share * pane.Width())), pane.top + 5};
        };
        view.OnMouseMove(0, over(place(view)));
        view.OnLButtonDown(MK_LBUTTON, over(place(view)));
        view.OnMouseMove(MK_LBUTTON, over(sample / (view.getSection().length - 1.0)));
        view.OnLButtonUp(0, over(place(view)));
    }

    CStorageDoc* document = nullptr;
};

TEST_F(FindSteps, MakesAnImageAndAWindowOfEachStep)
{
    CSurfMathView& view = terrace(false);
    ASSERT_TRUE(isEnabled(view));
    ASSERT_TRUE(find(view, [this](CVarListDlg& dialog) {
        EXPECT_EQ(dialog.layout().title, "Find steps");
        std::vector<std::string> shown;
        for (unsigned i = 0; i < dialog.rowCount(); ++i) shown.push_back(dialog.rowText(i));
        // 64 / 32 columns to either side, 40 / 13 rows, 40 / 100 of one at least, the first and the last row
        EXPECT_EQ(shown, (std::vector<std::string>{"Right to Left", "1", "5", "3", "1", "1", "40"}));
        EXPECT_EQ(masked(), rows) << "before anything was edited";
    }));
    ASSERT_EQ(document->getImagesNumber(), 2u);
    const SPMDataStream& step = document->getImage(1);
    EXPECT_STREQ(step.get_name(), "step0");
    ASSERT_EQ(step.get_dimension(0).length, unsigned(rows));
    // The slope is as steep in the column before the edge, which comes first; 64 - (edge - 1) - 1 from the right.
    for (int row = 0; row < rows; ++row) ASSERT_EQ(value(1, row), 64 - edge(row)) << row;
    EXPECT_EQ(step.values.get_axis(0), VLAxis(100, 2, "nm"));
    EXPECT_EQ(step.values.get_axis(1), VLAxis(100, 1, "line"));
    EXPECT_EQ(step.get_dimension(0).get_axis(0), VLAxis(0, 3, "nm"));
    EXPECT_STREQ(document->getString("stepsearch.search_rows", 1), "3");
    const auto* const window = viewOf<CSectionView>(1);
    ASSERT_TRUE(window);
    EXPECT_EQ(window->getSectionPoint(1).x, rows - 1);
    for (const char* const axis : {"AxisX", "AxisZ"}) EXPECT_EQ(window->intOption(axis), 1) << axis;
    EXPECT_EQ(window->intOption("marks_mode"), 1);
    const CRect surface = view.GetParentFrame()->GetWindowRect(), own = window->GetParentFrame()->GetWindowRect();
    EXPECT_EQ(own.left, surface.right) << "beside it";
    EXPECT_EQ(window->getParentView(), nullptr) << "it stays when the surface closes";
    EXPECT_TRUE(document->isChanged());
}

TEST_F(FindSteps, ShowsWhatEachEditFindsAndTakesNothingBackButTheMask)
{
    CSurfMathView& view = terrace(false);
    ASSERT_TRUE(find(view));
    find(
        view,
        [this](CVarListDlg& dialog) {
            const auto edit = [&dialog](unsigned row, const char* text) { ASSERT_TRUE(dialog.edit(row, text)); };
            edit(6, "30"); // the last row, counted from 1
            EXPECT_EQ(masked(), 30);
            edit(5, "11");
            EXPECT_EQ(masked(), 20);
            edit(3, "25");
            EXPECT_EQ(dialog.rowText(3), "20") << "of the rows that are left";
            EXPECT_EQ(masked(), 0) << "no step is longer than 20 rows";
            edit(3, "4");
            edit(0, "Left to Right");
            EXPECT_EQ(masked(), 0) << "heights only rise";
            edit(0, "Right to Left");
            EXPECT_EQ(masked(), 20);
            const auto& buttons = dialog.layout().buttons;
            const auto isDefault = [](const auto& each) { return each.id == "default"; };
            dialog.press(*std::ranges::find_if(buttons, isDefault));
            EXPECT_EQ(dialog.rowText(6), "40");
            edit(6, "15");
        },
        false);
    EXPECT_EQ(masked(), 15) << "the last one stays";
    EXPECT_EQ(document->getImagesNumber(), 2u) << "the results of the first search";
    EXPECT_EQ(value(1, 39), 31);
    EXPECT_FALSE(host.readString("Plugins\\StepsSearch", "stepsearch.end_row"));

    // Nothing found: the older ones go all the same. What was accepted is proposed next time, but for the rows.
    find(view, [](CVarListDlg& dialog) {
        dialog.edit(0, "Left to Right");
        dialog.edit(1, "2.5");
        dialog.edit(5, "3");
    });
    EXPECT_EQ(document->getImagesNumber(), 1u);
    EXPECT_EQ(viewOf<CSectionView>(1), nullptr);
    find(
        view,
        [](CVarListDlg& dialog) {
            EXPECT_EQ(dialog.rowText(0), "Left to Right");
            EXPECT_EQ(dialog.rowText(1), "2.5");
            EXPECT_EQ(dialog.rowText(5), "1");
        },
        false);
}

TEST_F(FindSteps, ReplacesOlderStepsButNeitherItsOwnImageNorObjects)
{
    CSurfMathView& view = terrace(false, "step9"); // an older result in front of the image
    const VLAxis x = document->getAxis(1, 0, 0), y = document->getAxis(1, 0, 1);
    std::vector<unsigned char> bytes(columns * rows, 1);
    decoration_bitmap bitmap{x.start, y.start, x.at(columns), y.at(rows), columns, rows, 5, bytes.data()};
    const VLPluginDecoration object{DECORATION_BITMAP, 1, 6, 0x00FF00, nullptr, "lengthy_mask", &bitmap};
    document->set_decoration(surface::lengthyMaskKey, &object, 1, DEC_IMAGE_SURFACE, 1);
    ASSERT_TRUE(find(view));
    ASSERT_EQ(document->getImagesNumber(), 2u);
    EXPECT_STREQ(document->getImage(0).get_name(), "Topo");
    EXPECT_EQ(view.getImageNumber(), 0u);
    EXPECT_EQ(document->decorations(0).all().at(surface::lengthyMaskKey).members.size(), 2u) << "beside the objects";
    EXPECT_EQ(masked(), rows);

    // The link knows where its image has gone to.
    CSectionView& step = *viewOf<CSectionView>(1);
    step.OnKeyDown(VK_RIGHT);
    EXPECT_TRUE(viewOf<CLineView>(0));
    document->getImage(0).set_name("stepped");
    ASSERT_TRUE(find(view));
    EXPECT_EQ(document->getImagesNumber(), 2u) << "the image that is searched is no result";
}

TEST_F(FindSteps, AsksBeforeCorrectedStepsGo)
{
    CSurfMathView& view = terrace(false);
    ASSERT_TRUE(find(view));
    viewOf<CSectionView>(1)->OnKeyDown(VK_RIGHT);
    viewOf<CLineView>(0)->OnKeyDown(VK_LEFT);
    const short corrected = value(1, 21);
    EXPECT_EQ(corrected, 64 - edge(21) + 1);
    EXPECT_STREQ(document->getString(vldv::document::correctedStepKey, 1), "true")
        << "for when the file is opened again";
    find(view);
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_EQ(value(1, 21), corrected) << "No";
    host.yes = true;
    find(view);
    EXPECT_EQ(value(1, 21), 64 - edge(21));
    EXPECT_EQ(host.messages.size(), 2u);
    find(view);
    EXPECT_EQ(host.messages.size(), 2u) << "nothing was corrected since";
    document->setString(vldv::document::correctedStepKey, "true", 1); // in an earlier session
    find(view);
    EXPECT_EQ(host.messages.size(), 3u);
}

TEST_F(FindSteps, AreTiedToTheirImageWhenTheFileIsOpenedAgain)
{
    ASSERT_TRUE(find(terrace(true, "Other"), [](CVarListDlg& dialog) { dialog.edit(0, "Left to Right"); }));
    ASSERT_EQ(document->getImagesNumber(), 3u);
    const std::wstring path = (folder / "again.spm").wstring();
    ASSERT_TRUE(document->OnSaveDocument(path.c_str()));
    document = &opened(path);
    host.pump();
    auto* step = viewOf<CSectionView>(2);
    ASSERT_TRUE(step);
    EXPECT_EQ(step->intOption("marks_mode"), 1) << "with the crossbar";
    step->OnKeyDown(VK_RIGHT); // from row 20 of 39 steps
    auto* const profile = viewOf<CLineView>(1);
    ASSERT_TRUE(profile) << "of the image in which it was found, which is the second of two";
    EXPECT_EQ(profile->getSectionPoint(0).y, 21);
    const short before = value(2, 21);
    profile->OnKeyDown(VK_LEFT);
    EXPECT_EQ(value(2, 21), before - 1) << "columns count from the left";
}

TEST_F(FindSteps, AreOffForCurvesAndVolumes)
{
    CSurfMathView& view = terrace(false);
    const SPMDataStream volume = test_support::made_stream("v", {{4}, {4}, {4}}, {}, [](unsigned i) { return i; });
    document->getImage(0) = volume;
    document->revalidateImage(0);
    EXPECT_FALSE(isEnabled(view));
}

class StepLink : public FindSteps, public testing::WithParamInterface<bool> {};

TEST_P(StepLink, CrossbarsLeadEachOther)
{
    const bool isFalling = GetParam(); // found from the left, and counted from there
    CSurfMathView& surface = terrace(isFalling);
    ASSERT_TRUE(find(surface, [&](CVarListDlg& dialog) {
        if (isFalling) dialog.edit(0, "Left to Right");
    }));
    ASSERT_EQ(document->getImagesNumber(), 2u);
    const auto stored = [&](int column) { return isFalling ? column : columns - 1 - column; };
    CSectionView& step = *viewOf<CSectionView>(1);
    ASSERT_EQ(viewOf<CLineView>(0), nullptr);

    drag(step, 25);
    auto* const line = viewOf<CLineView>(0);
    ASSERT_TRUE(line) << "none was open";
    EXPECT_EQ(line->getSectionPoint(0), (CPoint{0, 25}));
    EXPECT_EQ(line->getSectionPoint(1), (CPoint{columns - 1, 25}));
    EXPECT_EQ(line->intOption("marks_mode"), 1);
    EXPECT_DOUBLE_EQ(place(*line), (edge(25) - 1) / 63.0);
    step.OnKeyDown(VK_LEFT);
    EXPECT_EQ(line->getSectionPoint(0).y, 24) << "the same window";
    EXPECT_EQ(document->views().size(), 3u);

    // Back: columns of one line are one correction.
    for (int i = 0; i < 3; ++i) line->OnKeyDown(VK_RIGHT);
    EXPECT_EQ(value(1, 24), stored(edge(24) + 2));
    EXPECT_EQ(step.getSection().samples[24], stored(edge(24) + 2)) << "shown at once";
    EXPECT_DOUBLE_EQ(place(step), 24 / 39.0);
    EXPECT_EQ(value(1, 23), stored(edge(23) - 1));
    EXPECT_EQ(value(1, 25), stored(edge(25) - 1));
    line->OnKeyDown(VK_UP);
    EXPECT_EQ(line->getSectionPoint(0).y, 25);
    EXPECT_DOUBLE_EQ(place(*line), (edge(25) - 1) / 63.0) << "the step on the next line";
    EXPECT_DOUBLE_EQ(place(step), 25 / 39.0);
    EXPECT_EQ(value(1, 25), stored(edge(25) - 1)) << "walking writes nothing";
    drag(*line, 50);
    EXPECT_EQ(value(1, 25), stored(50));
    document->undo(1);
    EXPECT_EQ(value(1, 25), stored(edge(25) - 1));
    EXPECT_DOUBLE_EQ(place(*line), (edge(25) - 1) / 63.0) << "the crossbar goes back with the step";
    EXPECT_EQ(value(1, 24), stored(edge(24) + 2));
    document->undo(1);
    EXPECT_EQ(value(1, 24), stored(edge(24) - 1));
    EXPECT_FALSE(document->canUndo(1));
}

TEST_P(StepLink, EitherWindowMayCloseFirst)
{
    const bool closesStep = GetParam();
    CSurfMathView& surface = terrace(false);
    ASSERT_TRUE(find(surface));
    CSectionView& step = *viewOf<CSectionView>(1);
    step.OnKeyDown(VK_RIGHT);
    CLineView& line = *viewOf<CLineView>(0);
    const auto close = [this](CImageView& view) {
        view.closeFrame();
        host.pump();
    };
    if (closesStep) {
        close(step);
        line.OnKeyDown(VK_RIGHT);
        line.OnKeyDown(VK_UP);
        EXPECT_FALSE(document->canUndo(1)) << "there is no window to correct";
    } else {
        close(line);
        step.OnKeyDown(VK_RIGHT);
        ASSERT_TRUE(viewOf<CLineView>(0)) << "another one opens";
        document->RemoveImage(0);
        host.pump();
        CSectionView& left = *viewOf<CSectionView>(0);
        left.OnKeyDown(VK_RIGHT);
        EXPECT_EQ(document->views().size(), 1u) << "its image is gone: nothing to show";
    }
}

INSTANTIATE_TEST_SUITE_P(BothWays, StepLink, testing::Bool());

} // namespace
