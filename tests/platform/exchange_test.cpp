#include "platform/DataExchange.h"
#include "platform/WinApp.h"
#include "platform/dpi.h"
#include "platform/profile_double.h"
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
