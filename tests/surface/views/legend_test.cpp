// Texts, bars and pens of the legend, on plain values.
#include "surface/figures/section_pens.h"
#include "surface/views/legend.h"
#include "view/axes/chart_axes.h"
#include "view/axes/scale_mark.h"

#include <gtest/gtest.h>

namespace {

TEST(ScaleBar, IsAsLongAsAskedOrThreeQuartersOfTheSpan)
{
    struct bar_case {
        const char* why;
        double span;
        const char* units;
        double wanted, margin, length;
    };
    const bar_case cases[] = {
        {"one digit, rounded down", 812, "px", 1000, 0.05, 600}, // 609
        {"as asked", 5, "um", 1000, 0.05, 1},
        {"asked in nanometres", 3, "um", 1700, 0.05, 1},
        {"asked length does not fit between the margins", 1, "um", 950, 0.05, 0.7},
        {"just fits", 1, "um", 900, 0.05, 0.9},
        {"too short to be seen", 200, "um", 1000, 0.05, 100},
        {"none asked", 400, "nm", 0, 0.05, 300},
        {"nothing to measure", 0, "nm", 0, 0.05, 0},
        {"backwards", -400, "nm", 0, 0.05, -300},
    };
    for (const bar_case& each : cases)
        EXPECT_NEAR(view::scale_bar_length(each.span, each.units, each.wanted, each.margin), each.length, 1e-12)
            << each.why;
}

TEST(SectionPens, TheOnePaintsWhatTheOtherLeavesOut)
{
    for (int style = 0; style <= 4; ++style)
        for (const int width : {1, 3}) {
            const surface::section_pens pens = surface::make_section_pens(style, width, 0xFF);
            EXPECT_EQ(pens.line.width, width);
            if (style == 0) {
                EXPECT_TRUE(pens.under.isNull());
                continue;
            }
            // Along the line, which of the two is on at each position.
            const auto isOn = [](const std::vector<std::uint32_t>& pattern, std::uint32_t at) {
                std::uint32_t length = 0;
                for (const std::uint32_t part : pattern) length += part;
                at %= length;
                std::size_t i = 0;
                for (; at >= pattern[i]; ++i) at -= pattern[i];
                return i % 2 == 0;
            };
            for (std::uint32_t at = 0; at < 100; ++at)
                EXPECT_NE(isOn(pens.line.pattern, at), isOn(pens.under.pattern, at)) << style << " at " << at;
        }
}

TEST(Legend, LongTextsAreCutByTheirAverageCharacter)
{
    EXPECT_EQ(surface::cut_text("Gain: 12", 48, 60.0), "Gain: 12") << "60 / 48 * 8 - 1 = 9";
    EXPECT_EQ(surface::cut_text("Gain: 12", 48, 48.0), "Gain..."); // 7 fit, 3 of them dots
    EXPECT_EQ(surface::cut_text("Gain: 12", 48, 12.0), "...");
    EXPECT_EQ(surface::cut_text("\u00b5\u00b5\u00b5\u00b5\u00b5\u00b5", 36, 36.0), "\u00b5\u00b5...")
        << "characters, not bytes";
}

TEST(Legend, AxesReadInOneUnit)
{
    const view::shown_axis level = view::shown_span("m", 2e-6, 0.0, true);
    EXPECT_EQ(level.units, "µm") << "all samples are equal";
    EXPECT_NEAR(level.start, 2.0, 1e-12);
    EXPECT_EQ(level.end, level.start);
    const view::shown_axis far = view::shown_span("nm", 500.0, 3000.0, false);
    EXPECT_EQ(far.units, "\u00b5m");
    EXPECT_DOUBLE_EQ(far.start, 0.5);
    EXPECT_DOUBLE_EQ(far.end, 3.5);
}

TEST(Legend, SpansTooSmallForAUnitAreCountedInPowers)
{
    const struct {
        const char* given;
        double start, span;
        const char* units;
        double shownStart, shownEnd;
    } cases[] = {
        {"", -4.8e-9, 9.8e-9, "1e-9", -4.8, 5.0},
        {"deg", 2e-5, 3e-5, "1e-6 deg", 20, 50},
        {"", 5, 1e-7, "1e-9", 5e9, 5e9 + 100},
        {"m", 0, 3e-25, "1e-9 am", 0, 300},
        {"m", 0, 3e-12, "pm", 0, 3},
        {"", 1, 2e-4, "", 1, 1.0002},
    };
    for (const auto& each : cases) {
        const view::shown_axis shown = view::shown_span(each.given, each.start, each.span, true);
        EXPECT_EQ(shown.units, each.units);
        EXPECT_NEAR(shown.start, each.shownStart, 1e-6) << each.units;
        EXPECT_NEAR(shown.end, each.shownEnd, 1e-5) << each.units;
    }
}

} // namespace
