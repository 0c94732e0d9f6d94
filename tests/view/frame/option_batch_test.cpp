// All options that are set together settle together, whichever way they come.
#include "support/temporary_folder.h"
#include "view/view_fixture.h"

namespace {

/// A view whose text space is bound by a margin that follows its own option, as that of curves is.
class bound_view : public plain_view {
public:
    bound_view()
    {
        for (const char* name : {"TextVertSpace", "BottomMarginOpt", "text_size"})
            AddOptionHandler(name, &bound_view::count);
    }
    void GetOptionsList(SPMVar* vars, unsigned* count) override
    {
        static constexpr view::option_row own[] = {
            {"margins(Margins)", ""},
            {"TextVertSpace(Text Vertical Space),int,20,,,min(##,#BottomMargin)", "20"},
            {"BottomMarginOpt(Bottom Margin),int,20", "45"},
        };
        unsigned before = 0;
        plain_view::GetOptionsList(nullptr, &before);
        if (vars) plain_view::GetOptionsList(vars, count);
        for (unsigned i = 0; vars && i < before; ++i)
            if (std::string(vars[i].get_name()) == "BottomMargin") vars[i].set_options(",#BottomMarginOpt");
        view::list_options(own, before, vars, count);
    }
    std::map<std::string, int> told;

private:
    void count(const SPMVar& changed) { ++told[changed.get_name()]; }
};

class OptionBatch : public FramedViewTest<bound_view> {
protected:
    using counts = std::map<std::string, int>;

    void keep(const char* space, const char* margin)
    {
        host.profile().writeString("PlainView", "TextVertSpace", space);
        host.profile().writeString("PlainView", "BottomMarginOpt", margin);
    }
    void expect(int space, int margin, const counts& told)
    {
        EXPECT_EQ(int(view->options["TextVertSpace"]), space);
        EXPECT_EQ(int(view->options["BottomMargin"]), margin);
        EXPECT_EQ(view->told, told);
        view->told.clear();
    }
    temporary_folder folder;
};

TEST_F(OptionBatch, LoadingKeepsWhatTheProfileHolds)
{
    keep("60", "80");
    view->OnInitialUpdate();
    expect(60, 80, {}); // what opens has nothing that could follow
    keep("90", "120");
    view->CDCView::LoadOptions(nullptr);
    expect(90, 120, {{"TextVertSpace", 1}, {"BottomMarginOpt", 1}});
    view->CDCView::LoadOptions(nullptr);
    expect(90, 120, {}); // as it was
    view->CDCView::LoadOptions("^TextV");
    expect(90, 120, {{"TextVertSpace", 1}}); // asked for by name, as after a change behind it
}

TEST_F(OptionBatch, CancelBringsBackWhatWasThere)
{
    keep("60", "80");
    view->OnInitialUpdate();
    host.onDialog = [&](CVarListDlg& dialog) {
        for (unsigned i = 0; i < dialog.rowCount(); ++i)
            if (std::string(dialog.row(i).get_name()) == "BottomMarginOpt") dialog.edit(i, "30");
        expect(30, 30, {{"TextVertSpace", 1}, {"BottomMarginOpt", 1}});
        dialog.EndDialog(CVarListDlg::resultCancel);
    };
    view->OnCmdMsg(10118, nullptr);
    expect(60, 80, {{"TextVertSpace", 1}, {"BottomMarginOpt", 1}});
}

TEST_F(OptionBatch, DefaultsAndFilesCountAsOneChange)
{
    keep("60", "80");
    view->OnInitialUpdate();
    CVarListDlg dialog;
    view->OnCommandMessage("default", &dialog);
    expect(20, 45, {{"TextVertSpace", 1}, {"BottomMarginOpt", 1}});
    write_file(folder / "a.opt", "[PlainView]\nTextVertSpace=70;\ntext_size=9;\nBottomMarginOpt=95;\n");
    host.openPaths = {(folder / "a.opt").wstring()};
    view->OnCommandMessage("load", &dialog);
    expect(70, 95, {{"TextVertSpace", 1}, {"BottomMarginOpt", 1}, {"text_size", 1}});
}

TEST_F(OptionBatch, AHeadingIsNoOption)
{
    view->OnInitialUpdate();
    EXPECT_EQ(view->options["margins"].type, SPM_VAR_NONE);
    EXPECT_NE(view->options.get_var_i("margins"), unsigned(-1)) << "it has its place among them";
    view->SaveOptions();
    EXPECT_TRUE(host.readString("PlainView", "TextVertSpace"));
    EXPECT_FALSE(host.readString("PlainView", "margins")) << "nothing to keep";
    host.savePaths = {(folder / "a.opt").wstring()};
    CVarListDlg dialog;
    view->OnCommandMessage("save", &dialog);
    EXPECT_EQ(file_content(folder / "a.opt").find("margins"), std::string::npos);
}

} // namespace
