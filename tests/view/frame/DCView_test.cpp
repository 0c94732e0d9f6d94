#include "view/view_fixture.h"

#include "support/interface_file.h"

namespace {

using DCViewTest = FramedViewTest<plain_view>;

TEST_F(DCViewTest, FirstUpdateGivesFrameAndPictureTheBestSize)
{
    host.profile().writeString("PlainView", "LeftMargin", "30");
    host.profile().writeString("PlainView", "BottomMargin", "20");
    view->OnInitialUpdate();
    // 200 by 100 fills the box of 512: 512 by 256, with the margins around.
    EXPECT_EQ(view->GetClientRect(), CRect(0, 0, 542, 276));
    EXPECT_EQ(view->displayRect, CRect(30, 0, 542, 256));
    EXPECT_EQ(view->sourceRect, CRect(0, 0, 200, 100));
    EXPECT_EQ(view->image.width(), 512);
    EXPECT_EQ(view->GetBIH().biBitCount, 32);
    EXPECT_EQ(frame->GetClientRect(), CRect(0, 0, 542, 276));
    host.pump();
    EXPECT_EQ(view->GetClientRect(), CRect(0, 0, 542, 276)) << "the frame's layout agrees";
    double x = 0, y = 0;
    view->GetAspectRatio(x, y);
    EXPECT_EQ(x, 2.56);
    EXPECT_EQ(y, 2.56);
}

TEST_F(DCViewTest, ANewSizeMakesANewPictureOnce)
{
    show();
    const int before = view->refreshes;
    frame->MoveWindow(CRect(10, 10, 410, 310));
    EXPECT_EQ(view->refreshes, before) << "told after the handler";
    host.pump();
    EXPECT_EQ(view->refreshes, before + 1);
    EXPECT_EQ(view->image.width(), 400 - 2 * HeadlessWindow::border);
    frame->MoveWindow(CRect(20, 20, 420, 320));
    host.pump();
    EXPECT_EQ(view->refreshes, before + 1) << "a move is no new size";
    frameWindow().maximized = true;
    view->AdjustParentSize(50, 50, true);
    host.pump();
    EXPECT_EQ(view->displayRect.Width(), 392) << "a maximised frame stays, and the view with it";
}

TEST_F(DCViewTest, ErasesOnlyTheFourBands)
{
    for (const auto& [name, value] : {std::pair{"LeftMargin", "10"}, {"TopMargin", "20"}, {"RightMargin", "30"}})
        host.profile().writeString("PlainView", name, value);
    show();
    RecordingDC dc;
    EXPECT_TRUE(view->OnEraseBkgnd(dc));
    std::vector<CRect> bands;
    for (const drawn& fill : dc.all(drawn::kind::region)) {
        bands.push_back(fill.box);
        EXPECT_EQ(fill.brush, CBrush::solid(0xFFFFFF));
    }
    const CRect client = view->GetClientRect();
    EXPECT_EQ(bands, (std::vector<CRect>{{0, 0, client.right, 20},
                                         {0, 20, 10, client.bottom},
                                         {client.right - 30, 20, client.right, client.bottom}}));
    view->OnDraw(dc);
    EXPECT_EQ(view->legends, 1);
    view->toggle_option("ShowLegend");
    view->OnDraw(dc);
    EXPECT_EQ(view->legends, 1);
}

TEST_F(DCViewTest, OnlyShiftAloneZoomsAndThePointStays)
{
    view->OnInitialUpdate();
    frame->MoveWindow(CRect(100, 100, 100 + 300 + 8, 100 + 200 + 28));
    host.pump();
    for (const unsigned flags : {0u, unsigned(MK_SHIFT | MK_CONTROL), unsigned(MK_SHIFT | MK_LBUTTON)})
        EXPECT_FALSE(view->OnMouseWheel(flags, 120, {50, 50}));
    EXPECT_TRUE(view->OnMouseWheel(MK_SHIFT, 120, {50, 100}));
    host.pump();
    EXPECT_EQ(view->displayRect, CRect(0, 0, 360, 240));
    EXPECT_EQ(frameWindow().rect.TopLeft(), (CPoint{90, 80})) << "50 - 60 and 100 - 120";
    EXPECT_TRUE(view->OnMouseWheel(MK_SHIFT, -120, {60, 120}));
    host.pump();
    EXPECT_EQ(view->displayRect, CRect(0, 0, 300, 200));
    EXPECT_EQ(frameWindow().rect.TopLeft(), (CPoint{100, 100}));
    frameWindow().maximized = true;
    EXPECT_FALSE(view->OnMouseWheel(MK_SHIFT, 120, {50, 50}));
}

TEST_F(DCViewTest, TheWheelStopsAtTwiceTheMonitorsAndAtTheSmallestPicture)
{
    show();
    const auto turn = [&](int delta) {
        for (int i = 0; i < 60; ++i) {
            EXPECT_TRUE(view->OnMouseWheel(MK_SHIFT, delta, {5, 5}));
            host.pump();
        }
    };
    turn(120);
    EXPECT_EQ(view->displayRect.Width(), 3840) << "2 * 1920";
    const CRect largest = frameWindow().rect;
    turn(120);
    EXPECT_EQ(frameWindow().rect, largest) << "it does not wander off either";
    turn(-120);
    EXPECT_EQ(std::min(view->displayRect.Width(), view->displayRect.Height()), 32);
    turn(120);
    EXPECT_TRUE(view->displayRect.Width() == 3840 || view->displayRect.Height() == 2160) << "and back";
}

TEST_F(DCViewTest, PlusAndMinusZoomAndZeroGivesTheUsualSize)
{
    show();
    const auto press = [this](unsigned key) {
        EXPECT_TRUE(view->OnKeyDown(key));
        host.pump();
    };
    press('0');
    const CRect usual = view->displayRect;
    const CPoint corner = frameWindow().rect.TopLeft();
    press(VK_ADD);
    EXPECT_EQ(view->displayRect.Width(), std::lround(usual.Width() * 1.2));
    EXPECT_EQ(frameWindow().rect.TopLeft(), corner) << "the window stays where it is";
    press(VK_SUBTRACT);
    press(VK_SUBTRACT);
    EXPECT_NEAR(view->displayRect.Width(), usual.Width() / 1.2, 1.0);
    press('0');
    EXPECT_EQ(view->displayRect, usual);
    host.display.keys = {VK_CONTROL};
    EXPECT_FALSE(view->OnKeyDown('0')) << "a shortcut of somebody else";
    frameWindow().maximized = true;
    EXPECT_FALSE(view->OnKeyDown(VK_ADD));
}

TEST_F(DCViewTest, FullScreenGoesThereAndBack)
{
    show();
    const CRect before = view->GetClientRect();
    host.display.rects = {CRect(0, 0, 800, 600), CRect(800, 0, 1600, 600)};
    ASSERT_TRUE(view->OnCmdMsg(10138, nullptr));
    host.pump();
    EXPECT_TRUE(view->fullscreenOn);
    EXPECT_TRUE(window().fullScreen);
    EXPECT_EQ(window().rect, host.display.rects[0]);
    EXPECT_FALSE(frame->IsWindowVisible());
    EXPECT_EQ(host.display.place, (CPoint{400, 300}));
    EXPECT_EQ(view->displayRect.Width(), 800);
    EXPECT_FALSE(view->OnKeyDown('F'));
    host.display.keys = {VK_CONTROL};
    EXPECT_TRUE(view->OnKeyDown('F'));
    host.pump();
    EXPECT_FALSE(view->fullscreenOn);
    EXPECT_TRUE(frame->IsWindowVisible());
    EXPECT_EQ(view->GetClientRect(), before);
    view->SwitchFullScreen();
    view->OnLButtonDblClk(0, {});
    EXPECT_FALSE(view->fullscreenOn) << "every resize leaves it first";
}

TEST_F(DCViewTest, OptionsComeFromTheProfileAndGoBack)
{
    host.profile().writeString("PlainView", "text_size", "20");
    host.profile().writeString("PlainView", "tics.x.number", "9");
    view->OnInitialUpdate();
    EXPECT_EQ(int(view->options["text_size"]), 20);
    view->setOption("tics.x.number", "3");
    view->setOption("axis_thickness", "4");
    view->setOption("tics.y.number", "8");
    host.profile().writeString("PlainView", "axis_thickness", "7");
    view->LoadOptions("^tics\\.[xy]");
    EXPECT_EQ(int(view->options["tics.x.number"]), 9) << "the profile's";
    EXPECT_EQ(int(view->options["axis_thickness"]), 4) << "not among the asked ones";
    EXPECT_EQ(int(view->options["tics.y.number"]), 8) << "what is there stays where the profile has nothing";

    view->SaveOptions();
    EXPECT_EQ(host.readString("PlainView", "tics.y.number"), "8");
    EXPECT_EQ(host.readString("PlainView", "LeftMargin"), "0") << "unlabelled ones too";
    view->saveAtOnce("axis_thickness");
    view->setOption("axis_thickness", "2");
    EXPECT_EQ(host.readString("PlainView", "axis_thickness"), "2");
}

TEST_F(DCViewTest, TheDialogStoresOnOkAndRestoresOnCancel)
{
    view->OnInitialUpdate();
    host.onDialog = [&](CVarListDlg& dialog) {
        EXPECT_EQ(dialog.layout().buttons.size(), 5u) << "the built-in layout";
        for (unsigned i = 0; i < dialog.rowCount(); ++i)
            if (std::string(dialog.row(i).get_name()) == "background") {
                EXPECT_EQ(dialog.rowText(i), "0xffffff");
                EXPECT_TRUE(dialog.edit(i, "ff00"));
                EXPECT_FALSE(dialog.edit(i, "green"));
            }
        EXPECT_EQ(int(view->options["background"]), 0xff00) << "live";
        dialog.EndDialog(CVarListDlg::resultCancel);
    };
    view->OnCmdMsg(10118, nullptr);
    EXPECT_EQ(host.dialogs, 1);
    EXPECT_EQ(int(view->options["background"]), 0xffffff);
    EXPECT_FALSE(host.readString("PlainView", "background"));

    host.onDialog = [&](CVarListDlg& dialog) {
        dialog.edit(1, "0x123456");
        for (const auto& button : dialog.layout().buttons)
            if (button.what == platform::layout_button::kind::ok) dialog.press(button);
    };
    view->OnCmdMsg(10118, nullptr);
    EXPECT_EQ(host.readString("PlainView", "background"), std::to_string(0x123456));
    EXPECT_FALSE(host.readString("PlainView", "legend")) << "only what was changed";

    view->setOption("LeftMargin", "15");
    host.onDialog = [&](CVarListDlg& dialog) {
        EXPECT_EQ(dialog.layout().title, "Own");
        for (const auto& button : dialog.layout().buttons) dialog.press(button);
    };
    const interface_file own("PlainView.xml",
                             "<varlist name=\"Own\"><defaultvarlist left=\"1\" top=\"1\" width=\"1\" height=\"1\"/>"
                             "<userbutton left=\"1\" top=\"1\" width=\"1\" height=\"1\" id=\"default\" name=\"D\"/>"
                             "<button left=\"1\" top=\"1\" width=\"1\" height=\"1\" type=\"ok\"/></varlist>");
    view->OnCmdMsg(10118, nullptr);
    EXPECT_EQ(int(view->options["background"]), 0xffffff);
    EXPECT_EQ(int(view->options["LeftMargin"]), 15) << "unlabelled options are left alone";
    EXPECT_EQ(host.readString("PlainView", "background"), std::to_string(0xffffff));
}

TEST_F(DCViewTest, CancelTakesTheDefaultsOutOfTheProfileAgain)
{
    host.profile().writeString("PlainView", "text_size", "20");
    view->OnInitialUpdate();
    view->setOption("axis_thickness", "4"); // of this window alone
    view->saveAtOnce("tics.x.length");
    for (const bool isAccepted : {false, true}) {
        host.onDialog = [&](CVarListDlg& dialog) {
            for (const auto& button : dialog.layout().buttons)
                if (button.id == "default") dialog.press(button);
            EXPECT_EQ(host.readString("PlainView", "text_size"), "13");
            view->setOption("tics.x.length", "7");
            dialog.EndDialog(isAccepted ? CVarListDlg::resultOk : CVarListDlg::resultCancel);
        };
        view->OnCmdMsg(10118, nullptr);
        using text = std::optional<std::string>;
        EXPECT_EQ(host.readString("PlainView", "text_size"), isAccepted ? "13" : "20");
        EXPECT_EQ(host.readString("PlainView", "axis_thickness"), isAccepted ? text("1") : text());
        EXPECT_EQ(host.readString("PlainView", "tics.x.length"), isAccepted ? text("7") : text());
        EXPECT_EQ(int(view->options["axis_thickness"]), isAccepted ? 1 : 4);
    }
}

TEST_F(DCViewTest, CopiesPicturesAndGathersText)
{
    show();
    view->OnCmdMsg(57634, nullptr);
    EXPECT_EQ(host.clips.bitmap, view->GetClientRect().Size());
    view->OnCmdMsg(10021, nullptr);
    view->OnCmdMsg(10022, nullptr);
    EXPECT_EQ(host.clips.content, L"head\nrow\nrow\n");
    host.clips.busy = true;
    view->OnCmdMsg(10021, nullptr);
    EXPECT_EQ(host.clips.content, L"head\nrow\nrow\n") << "a busy clipboard is left alone";
}

TEST_F(DCViewTest, CommandsShowTheirState)
{
    show();
    CCmdUI legend{.m_nID = 10020};
    EXPECT_TRUE(app.routeCommand(10020, &legend) || view->OnCmdMsg(10020, &legend));
    EXPECT_TRUE(legend.checked);
    app.setActiveFrame(frame);
    EXPECT_TRUE(app.routeCommand(10020, nullptr)) << "frame, view";
    EXPECT_FALSE(static_cast<bool>(view->options["ShowLegend"]));
    EXPECT_EQ(view->edits, 1);
    EXPECT_FALSE(app.routeCommand(65000, nullptr));
    CCmdUI actual{.m_nID = 10121};
    view->OnCmdMsg(10121, nullptr);
    host.pump();
    EXPECT_EQ(view->displayRect, CRect(0, 0, 200, 100));
    view->OnCmdMsg(10121, &actual);
    EXPECT_TRUE(actual.checked);
}

TEST_F(DCViewTest, PrintsWithinTheMarginsInShape)
{
    show();
    RecordingDC page({960 * 10, 960 * 14}); // 100 by 140 inches at 96 dots
    view->OnPrepareDC(page, false);
    EXPECT_EQ(page.LPtoDP(CPoint{7, 7}), (CPoint{7, 7}));
    view->OnPrepareDC(page, true);
    EXPECT_EQ(page.LPtoDP(CPoint{0, 0}), (CPoint{120, 96})) << "1.25 and 1 inch";
    const CRect client = view->GetClientRect();
    const CRect printed = page.LPtoDP(client);
    EXPECT_EQ(printed.right, 120 + 9600 - 240) << "the width fills the page";
    EXPECT_NEAR(static_cast<double>(printed.Height()) / printed.Width(),
                static_cast<double>(client.Height()) / client.Width(), 1e-3);
}

} // namespace
