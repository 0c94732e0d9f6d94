// Texts and tables: their commands, their sheets of paper, and what tables tell of clicks.
#include "document/StorageDoc.h"
#include "platform/app/DocTemplate.h"
#include "support/temporary_folder.h"
#include "view/panes/PaneView.h"
#include "view/panes/ParametersView.h"
#include "view/panes/TextView.h"
#include "view/panes/text_pages.h"
#include "view/view_fixture.h"

namespace {

using lines = std::vector<std::wstring>;

TEST(TextPages, ColumnsStandBelowEachOtherInEachRunOfRows)
{
    EXPECT_EQ(view::lines_in_columns(L"title\r\na\tbb\tc\r\naaa\tb\tcc\n\nx\ty\r"),
              (lines{L"title", L"a    bb  c", L"aaa  b   cc", L"", L"x  y"}));
    EXPECT_EQ(view::lines_in_columns(L""), lines{});
}

TEST(TextPages, LongLinesGoOnIndented)
{
    EXPECT_EQ(view::broken_lines({L"12345678901", L"", L"123456"}, 6),
              (lines{L"123456", L"  7890", L"  1", L"", L"123456"}));
    EXPECT_EQ(view::broken_lines({L"12345"}, 0), (lines{L"123", L"  4", L"  5"})) << "no sheet is too narrow";
}

TEST(TextPages, FillSheetsBetweenTheMargins)
{
    std::wstring text;
    for (int i = 1; i <= 100; ++i) text += L"line " + std::to_wstring(i) + L"\r\n";
    view::text_pages pages(text, L"results", CRect(1000, 500, 1000, 500));
    // 960 pixels at 96 dots an inch: between margins of half an inch 864 pixels, 72 lines of 12, less 4 of head and
    // foot.
    RecordingDC first({960, 960}), second({960, 960});
    EXPECT_TRUE(pages.draw(first, 0));
    EXPECT_FALSE(pages.draw(second, 1));
    const std::vector<drawn> one = first.all(drawn::kind::text), two = second.all(drawn::kind::text);
    ASSERT_EQ(one.size(), 1u + 68 + 1);
    EXPECT_EQ(one.front().text, "results");
    EXPECT_EQ(one[1].text, "line 1");
    EXPECT_EQ(one[1].box.TopLeft(), (CPoint{96, 48 + 2 * 12}));
    EXPECT_EQ(one[68].text, "line 68");
    EXPECT_EQ(one.back().text, "1");
    EXPECT_EQ(one.back().box.bottom, 960 - 48);
    ASSERT_EQ(two.size(), 1u + 32 + 1);
    EXPECT_EQ(two[1].text, "line 69");
    EXPECT_TRUE(one[1].tools.font.fixedPitch);
}

TEST(TableView, JoinsCellsAsOtherProgramsTakeThem)
{
    EXPECT_EQ(CTableView::joined({{L"a", L"b"}, {L"1\n2", L"say \"x\""}, {L"\"q\"", L""}}),
              L"a\tb\r\n\"1\n2\"\tsay \"x\"\r\n\"\"\"q\"\"\"\t\r\n");
}

/// A table of one row.
class small_table : public CTableView {
public:
    void OnUpdate(CView*, std::uint32_t, const hint_object&) override { showTable({{L"X", L"Y"}, {L"1", value}}); }
    std::wstring value = L"2";
};

template <class View>
class PaneTest : public FramedViewTest<View> {
protected:
    PaneTest()
    {
        this->document.SetPathName((folder / "a.spm").wstring().c_str(), false);
        this->view->OnInitialUpdate();
    }
    temporary_folder folder;
};
using TextPaneTest = PaneTest<CTextView>;
using TablePaneTest = PaneTest<small_table>;

TEST_F(TextPaneTest, CopiesTheSelectionOrAllAndSelectsAll)
{
    view->appendText(L"one\ntwo");
    EXPECT_TRUE(view->OnCmdMsg(57634, nullptr));
    EXPECT_EQ(host.clips.content, L"one\r\ntwo");
    window().selection = L"two";
    view->OnCmdMsg(57634, nullptr);
    EXPECT_EQ(host.clips.content, L"two");
    host.clips.busy = true;
    window().selection = L"one";
    view->OnCmdMsg(57634, nullptr);
    EXPECT_EQ(host.clips.content, L"two") << "another program holds the clipboard";
    EXPECT_TRUE(view->OnCmdMsg(57642, nullptr));
    EXPECT_TRUE(window().isAllSelected);
    CCmdUI ui{.m_nID = 57642};
    EXPECT_TRUE(view->OnCmdMsg(57642, &ui));
    EXPECT_FALSE(view->OnCmdMsg(57643, &ui)) << "others go on to the document";
}

TEST_F(TextPaneTest, AsksBeforeResultsGoThatStandNowhereElse)
{
    EXPECT_TRUE(view->mayClose()) << "nothing to lose";
    view->appendText(L"one");
    EXPECT_FALSE(view->mayClose()) << "the first answer keeps it";
    host.answers = {1};
    EXPECT_TRUE(view->mayClose());
    view->OnCmdMsg(57634, nullptr);
    EXPECT_TRUE(view->mayClose());
    EXPECT_EQ(host.questions.size(), 2u) << "all of it was copied";
    view->appendText(L"two");
    EXPECT_FALSE(view->mayClose());
}

TEST_F(TextPaneTest, SavesItsTextBesideTheDocument)
{
    view->appendText(L"height\t1 µm");
    host.savePaths = {(folder / "own.txt").wstring(), (folder / "no" / "such.txt").wstring()};
    EXPECT_TRUE(view->OnCmdMsg(57603, nullptr));
    ASSERT_EQ(host.savePrompts.size(), 1u);
    EXPECT_EQ(host.savePrompts[0].suggestedPath, (folder / "a.txt").wstring());
    EXPECT_EQ(host.savePrompts[0].extension, "txt");
    EXPECT_EQ(file_content(folder / "own.txt"), "height\t1 µm");
    view->OnCmdMsg(57604, nullptr);
    ASSERT_EQ(host.messages.size(), 1u) << "a failure is told";
    EXPECT_NE(host.messages[0].find("such.txt"), std::string::npos);
    view->OnCmdMsg(57603, nullptr);
    EXPECT_EQ(folder.files(), 1u) << "cancelled";
}

TEST_F(TextPaneTest, PrintsWhatItShowed)
{
    view->appendText(L"one");
    EXPECT_TRUE(view->OnCmdMsg(57609, nullptr));
    ASSERT_EQ(host.previewed.size(), 1u);
    view->appendText(L"two"); // behind the preview
    RecordingDC sheet;
    EXPECT_FALSE(host.previewed[0].paint(sheet, 0));
    const std::vector<drawn> texts = sheet.all(drawn::kind::text);
    ASSERT_EQ(texts.size(), 3u);
    EXPECT_EQ(texts[1].text, "one");
}

TEST_F(TablePaneTest, CopiesTheSelectedCellsOrTheTable)
{
    view->OnCmdMsg(57634, nullptr);
    EXPECT_EQ(host.clips.content, L"X\tY\r\n1\t2\r\n");
    window().cells = {{L"2"}};
    view->OnCmdMsg(57634, nullptr);
    EXPECT_EQ(host.clips.content, L"2\r\n");
    view->OnUpdate(nullptr, 2, {});
    EXPECT_EQ(view->selectedText(), L"2\r\n") << "nothing has changed";
    view->value = L"3";
    view->OnUpdate(nullptr, 2, {});
    EXPECT_EQ(view->selectedText(), L"");
}

TEST(ParametersView, IsATableOfItsOwnName)
{
    CHeadlessHost host;
    CWinApp app{host};
    CStorageDoc document;
    document.autoDelete = false;
    document.SetTitle(L"a/b");
    document.setString("Gain", "2", unsigned(-1));
    CParametersView view;
    document.AddView(&view);
    view.Create(nullptr, view.kind());
    view.OnInitialUpdate();
    EXPECT_EQ(view.allText(), L"Image\tParameter\tValue\r\nDocument\tGain\t2\r\n");
    view.OnCmdMsg(57603, nullptr);
    ASSERT_EQ(host.savePrompts.size(), 1u);
    EXPECT_EQ(host.savePrompts[0].suggestedPath, L"a_b parameters.txt") << "no folder by accident";
    document.RemoveView(&view);
}

} // namespace
