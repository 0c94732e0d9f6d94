// What leaves a view: its options as a file, its picture on paper.
#include "base/text.h"
#include "support/RecordingDC.h"
#include "support/temporary_folder.h"
#include "view/view_fixture.h"

namespace {

class DCViewFilesTest : public FramedViewTest<plain_view> {
protected:
    void press(const char* id)
    {
        CVarListDlg dialog;
        view->OnCommandMessage(id, &dialog);
    }
    temporary_folder folder;
};

TEST_F(DCViewFilesTest, OptionsAreSavedAsASectionAndComeBack)
{
    view->OnInitialUpdate();
    const auto file = folder / "looks.opt";
    write_file(file, "[Other]\nx=1; mine\n");
    view->setOption("legend", "0x123456");
    view->setOption("text_face", "It's;here");
    view->setOption("LeftMargin", "7");
    host.savePaths = {file.wstring()};
    press("save");
    ASSERT_EQ(host.savePrompts.size(), 1u);
    EXPECT_EQ(host.savePrompts[0].filter, "Options Files (*.opt)|*.opt||");
    EXPECT_EQ(host.savePrompts[0].extension, "opt");
    EXPECT_EQ(host.savePrompts[0].suggestedPath, base::widen(view->GetViewSection()) + L".opt");
    const std::string content = file_content(file);
    EXPECT_TRUE(content.starts_with("[Other]\nx=1; mine\n[PlainView]\n; This section was automatically generated\n"));
    EXPECT_NE(content.find("\nlegend=" + std::to_string(0x123456) + ";\n"), std::string::npos);
    EXPECT_EQ(content.find("LeftMargin"), std::string::npos) << "it has no label";

    view->setOption("legend", "0");
    view->setOption("LeftMargin", "9");
    host.openPaths = {file.wstring()};
    const int before = view->edits;
    press("load");
    EXPECT_EQ(view->edits, before + 1);
    EXPECT_EQ(int(view->options["legend"]), 0x123456);
    EXPECT_EQ(int(view->options["LeftMargin"]), 9);

    write_file(file, "[PlainView]\nlegend=5;\nunknown=3;\nLeftMargin=wide;\ntext_size=20; large\n");
    press("load");
    EXPECT_EQ(int(view->options["legend"]), 5);
    EXPECT_EQ(int(view->options["text_size"]), 20);
    EXPECT_TRUE(host.messages.empty());
}

TEST_F(DCViewFilesTest, WhatCannotBeReadOrWrittenIsTold)
{
    view->OnInitialUpdate();
    host.openPaths = {(folder / "none.opt").wstring()};
    press("load");
    host.savePaths = {(folder / "no" / "such.opt").wstring()};
    press("save");
    ASSERT_EQ(host.messages.size(), 2u);
    EXPECT_NE(host.messages[0].find("none.opt"), std::string::npos);
    EXPECT_NE(host.messages[1].find("such.opt"), std::string::npos);
    host.openPaths.clear();
    press("load");
    press("save");
    EXPECT_EQ(host.messages.size(), 2u) << "cancelled";
}

TEST_F(DCViewFilesTest, PrintingDrawsTheWindowOnTheSheet)
{
    show();
    frame->SetWindowText(L"a[Height]");
    view->OnCmdMsg(57607, nullptr);
    view->OnCmdMsg(57608, nullptr);
    view->OnCmdMsg(57609, nullptr);
    ASSERT_EQ(host.printed.size(), 2u);
    EXPECT_TRUE(host.printed[0].asks);
    EXPECT_FALSE(host.printed[1].asks);
    EXPECT_EQ(host.printed[0].title, L"a[Height]");
    ASSERT_EQ(host.previewed.size(), 1u);
    RecordingDC sheet({960, 960});
    const int legends = view->legends;
    EXPECT_FALSE(host.previewed[0].paint(sheet, 0)) << "one sheet";
    EXPECT_EQ(view->legends, legends + 1);
    ASSERT_EQ(sheet.operations.size(), 1u);
    // The data's 512 by 256 fill the width between the margins of 120 pixels.
    EXPECT_EQ(sheet.operations[0].tools.mapping.toDevice().m11, 720.0 / 512);
}

} // namespace
