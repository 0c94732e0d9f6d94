#include "platform/app/WinApp.h"
#include "platform/app/dpi.h"
#include "platform/dialogs/DataExchange.h"
#include "platform/dialogs/VarListCtrl.h"
#include "platform/profile/profile_double.h"
#include "support/HeadlessHost.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

struct one_control : CDataExchange {
    using CDataExchange::CDataExchange;
    std::wstring GetControlText(int) const override { return text; }
    void SetControlText(int, const std::wstring& shown) override { text = shown; }
    std::wstring text;
};

TEST(DoublePrecText, WritesByMagnitudeAndReadsWhatItCan)
{
    const std::tuple<double, int, const wchar_t*> written[] = {
        {1.5, 3, L"1.500"},  {1e7, 1, L"10000000.0"}, {2e7, 3, L"2e+07"},
        {1e-8, 2, L"1e-08"}, {0.0, 3, L"0"},          {-1.5, 3, L"-1.5"},
    };
    for (const auto& [value, precision, text] : written) {
        one_control out(false);
        double copy = value;
        DDX_DoublePrecText(&out, 1, copy, precision);
        EXPECT_EQ(out.text, text);
    }
    const std::pair<std::wstring, double> read[] = {
        {L" 2.5e1 nm", 25.0}, {L"abc", 7.0}, {L"", 7.0}, {std::wstring(256, L' ') + L"3", 7.0}};
    for (const auto& [text, expected] : read) {
        one_control in(true);
        in.text = text;
        double value = 7.0;
        DDX_DoublePrecText(&in, 1, value, 3);
        EXPECT_EQ(value, expected);
    }
}

struct one_grid : one_control {
    one_grid(bool saves, CVarListCtrl& grid_) : one_control(saves), grid(grid_) {}
    CVarListCtrl* GetVarListCtrl(unsigned id) override { return id == 5 ? &grid : nullptr; }
    CVarListCtrl& grid;
};

SPMVar declared(const char* declaration, const char* text)
{
    SPMVar variable;
    variable.Init(declaration);
    variable.from_string(text);
    return variable;
}

TEST(VarListCtrl, RowsStandUnderTheHeadingTheyFollow)
{
    constexpr unsigned alone = unsigned(-1);
    const std::pair<const char*, unsigned> rows[] = {
        {"marks(Marks)", alone},
        {"marks_mode(Mode),enum,Vertical Lines,Crossbar,None", 0},
        {"marks.hidden,int", 0}, // no row
        {"marks.size(Size),int,1", 0},
        {"Values(Values),enum,Absolute,Relative", alone},
        {"marks.color(Color),int", alone}, // behind a gap
        {"empty(Nothing under it)", alone},
        {"ZScale(Y Scale)", alone},
        {"ZScale.zero(Zero level),enum,Min,Absolute", 6},
    };
    std::vector<SPMVar> variables;
    for (const auto& [declaration, heading] : rows) variables.emplace_back().Init(declaration);
    SPMVarList list;
    list.set_variables(variables.data(), static_cast<unsigned>(variables.size()));
    CVarListCtrl grid;
    grid.SetVarList(&list);
    ASSERT_EQ(grid.rowCount(), 8u);
    unsigned row = 0;
    for (const auto& [declaration, heading] : rows) {
        if (std::string(declaration).starts_with("marks.hidden")) continue;
        EXPECT_EQ(grid.headingOf(row), heading) << declaration;
        EXPECT_EQ(grid.isHeading(row), std::string(declaration).find(',') == std::string::npos) << declaration;
        ++row;
    }
    EXPECT_EQ(grid.headingOf(99), alone);
    EXPECT_FALSE(grid.edit(0, "text")) << "a heading holds nothing";
    EXPECT_EQ(grid.rowText(0), "");
    EXPECT_TRUE(grid.edit(2, "5"));
    EXPECT_EQ(int(list["marks.size"]), 5);
}

TEST(VarListExchange, GridTakesVariablesAndGivesBackWhatWasEdited)
{
    struct counter : IVarListPeer {
        explicit counter(int& times_) : times(times_) {}
        void refresh() override { ++times; }
        int& times;
    };
    SPMVarList list;
    CVarListCtrl grid;
    int refreshed = 0;
    grid.setPeer(std::make_unique<counter>(refreshed));
    grid.SetVarList(&list);
    SPMVar variables[] = {declared("width(Width, %),double,0,1,,100*##", "0.5"), declared("hidden,int", "3")};
    one_grid out(false, grid), in(true, grid);
    DDX_VarList(&out, 5, variables, 2);
    EXPECT_GE(refreshed, 1);
    ASSERT_EQ(grid.rowCount(), 1u) << "a row needs a label";
    EXPECT_EQ(grid.rowText(0), "50");
    EXPECT_TRUE(grid.edit(0, "25"));
    EXPECT_FALSE(grid.edit(1, "25")) << "no such row";
    DDX_VarList(&in, 6, variables, 2);
    EXPECT_EQ(double(variables[0]), 0.5) << "no such grid";
    DDX_VarList(&in, 5, variables, 2);
    EXPECT_EQ(double(variables[0]), 0.25);
    EXPECT_EQ(int(variables[1]), 3);
    const int before = refreshed;
    list.set_var("width", "0.75");
    EXPECT_GT(refreshed, before) << "changes from elsewhere show";
    grid.SetVarList(nullptr);
    EXPECT_EQ(grid.rowCount(), 0u);
}

TEST(ProfileDouble, KeepsEveryDigitAndFallsBack)
{
    CHeadlessHost host;
    CWinApp app(host);
    EXPECT_EQ(GetProfileDouble(&app, "S", "none", 2.5), 2.5);
    EXPECT_TRUE(WriteProfileDouble(&app, "S", "third", 1.0 / 3.0));
    EXPECT_EQ(GetProfileDouble(&app, "S", "third", 0.0), 1.0 / 3.0);
    EXPECT_EQ(*host.readString("S", "third"), "0.33333333333333331");
    host.writeString("S", "text", "abc");
    EXPECT_EQ(GetProfileDouble(&app, "S", "text", 4.0), 4.0);
}

TEST(Dpi, ScalesSizesBySystemDots)
{
    EXPECT_EQ(CorrectDPISize(7), 7) << "no application";
    CHeadlessHost host;
    {
        CWinApp app(host);
        EXPECT_EQ(GetSystemDPIMultiplyer(), 1.0) << "the system cannot tell";
    }
    host.dpi = 144;
    CWinApp app(host);
    EXPECT_EQ(CorrectDPISize(512), 768);
    EXPECT_EQ(CorrectDPISize(3), 5) << "4.5, halves up";
    EXPECT_EQ(CorrectDPISize(-3), -4);
    host.dpi = 96;
    EXPECT_EQ(GetSystemDPIMultiplyer(), 1.5) << "asked once";
}

} // namespace
