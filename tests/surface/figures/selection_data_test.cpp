// The selection as others take it: regions, decoration files, crops, records for modules.
#include "support/streams.h"
#include "surface/figures/data_selection.h"
#include "surface/figures/decoration_text.h"
#include "surface/figures/image_crop.h"
#include "surface/figures/region_edit.h"

#include <gtest/gtest.h>
#include <random>

namespace {

using surface::cursor_mode;

TEST(Regions, StayInsideTheImage)
{
    std::mt19937 random(3);
    const CSize image{50, 30};
    surface::selection_state state;
    for (int round = 0; round < 400; ++round) {
        state.combine = static_cast<surface::combine_mode>(random() % 4);
        const auto any = [&](int length) { return static_cast<int>(random() % static_cast<unsigned>(length)); };
        state.selection = {any(50), any(30), any(50), any(30)};
        state.selectionActive = true;
        if (random() % 10 == 0) surface::invert_region(state, image);
        const CRect drawn = surface::covered_rect(state.selection);
        surface::finish_region(state, random() % 2 ? CRgn(drawn) : CRgn::ellipse(drawn), image);
        const CRect box = state.region.GetRgnBox();
        EXPECT_TRUE(box.left >= 0 && box.top >= 0 && box.right <= 49 && box.bottom <= 29);
        EXPECT_EQ(state.selectionActive, !state.region.isEmpty());
        const CRect bounds = surface::selection_bounds(state, CRect(10, 5, 30, 20), image);
        EXPECT_FALSE(bounds.IsRectEmpty());
        if (bounds != CRect({0, 0}, image)) {
            EXPECT_TRUE(bounds.left >= 10 && bounds.top >= 5 && bounds.right <= 30 && bounds.bottom <= 20);
        }
    }
    state.mode = cursor_mode::distance;
    EXPECT_EQ(surface::selection_bounds(state, CRect(10, 5, 30, 20), image), CRect(0, 0, 50, 30));
}

TEST(DecorationText, IsReadLenientlyButNeverGuessed)
{
    struct {
        const char* text;
        surface::decoration_lists lists;
    } const cases[] = {
        {"", {}},
        {"\\Marks:  1 , 2 ;\t3,4", {{}, {{1, 2}, {3, 4}}, {}}},
        {"\\Marks: 1,2;\n\\Marks: 5,6;\n", {{}, {{1, 2}}, {}}},
        {"\\Curve 2: 1,2;\n\\Curve 3: 1,2;\n", {}},
        {"\\Curve 1: 1,2;x,4;\n\\Curve 2: 5,6;\n", {{{}, {{5, 6}}}, {}, {}}},
        {"\\Marks: 1,2,3;\n\\Curve 1: 1;\n", {{{}}, {}, {}}},
        {"\\Marks: 99999999999,2;\n", {}},
        {"\\Marks: 0x10,2;\n", {}},
        {"\\Marks: 1,2;;3,4;\n", {}},
        {"\\Curve 1: 1,2;\n\\NCAFM image list\n\\Marks: 3,4;\n", {{{{1, 2}}}, {}, {}}},
        {"\\Curve 1: 1,2;\n\x1A\\Marks: 3,4;\n", {{{{1, 2}}}, {}, {}}},
        {"\\Curve profile 1: 1,2;\nMarks: 3,4;\nno line of a list\n", {{}, {}, {{{1, 2}}}}},
    };
    for (const auto& each : cases) EXPECT_EQ(surface::read_decoration_text(each.text), each.lists) << each.text;
}

/// Two frames of 6 by 4: raw 100 * frame + 10 * row + column.
SPMDataStream image()
{
    const VLAxis axis(10, 2, "nm");
    SPMDataStream stream = test_support::made_stream(
        "height", {{6, axis}, {4, axis}}, {}, [](unsigned i) { return 100 * (i / 24) + 10 * (i % 24 / 6) + i % 6; }, 2);
    for (const unsigned i : {0u, 1u}) stream.get_dimension(i).set_axis(1, VLAxis(0, 1, "line"));
    return stream;
}

std::vector<short> samples(const SPMDataStream& stream)
{
    const auto* const first = static_cast<const short*>(stream.array_data());
    return {first, first + stream.array_length()};
}

SPMDataStream outline()
{
    return test_support::made_stream("height", {}, {}, [](unsigned) { return 0; }, 0);
}

TEST(Crop, TakesEverySubImageAndMovesTheAxes)
{
    SPMDataStream part = outline();
    EXPECT_TRUE(surface::write_crop(part, image(), CRect(4, 1, 9, 3)));
    EXPECT_EQ(samples(part), std::vector<short>({14, 15, 24, 25, 114, 115, 124, 125}));
    EXPECT_EQ(part.get_dimension(0).get_axis(0).start, 18.0);
    EXPECT_EQ(part.get_dimension(0).get_axis(1).start, 4.0);
    EXPECT_EQ(part.get_dimension(1).get_axis(0).start, 12.0);
    EXPECT_FALSE(surface::write_crop(part, image(), CRect(0, 0, 2, 2))) << "as large as before";
    EXPECT_EQ(samples(part), std::vector<short>({0, 1, 10, 11, 100, 101, 110, 111}));
    EXPECT_FALSE(surface::write_crop(part, image(), CRect(6, 0, 8, 2)));
    EXPECT_EQ(part.array_length(), 8u);
}

TEST(DataSelection, TellsWhatTheModeSelects)
{
    using record = std::pair<unsigned, std::vector<int>>;
    surface::selection_state state;
    state.selectionActive = true;
    state.region = CRgn::combined(CRgn(CRect(1, 1, 3, 2)), CRgn(CRect(4, 1, 9, 2)), RGN_OR);
    state.selection = {1, 2, 3, 4};
    state.firstArm = {5, 6, 7, 8};
    state.marks = {{1, 1}, {2, 2}};
    state.curves = {{{1, 1}, {2, 2}}, {{3, 3}}};
    state.lengthy.corners = {{4, 4}, {5, 5}};
    const auto told = [&](cursor_mode mode) {
        state.mode = mode;
        std::vector<record> out;
        for (const VLPluginDataSelection& each : surface::data_selections(state, {6, 4})) {
            EXPECT_EQ(each.size, 36u);
            out.emplace_back(each.kind, std::vector<int>(each.data, each.data + 4));
        }
        return out;
    };
    EXPECT_EQ(told(cursor_mode::rectangle), (std::vector<record>{{4, {1, 1, 3, 2}}, {4, {4, 1, 6, 2}}}));
    EXPECT_EQ(told(cursor_mode::distance), (std::vector<record>{{6, {1, 2, 3, 4}}}));
    EXPECT_EQ(told(cursor_mode::angle), (std::vector<record>{{6, {5, 6, 7, 8}}, {6, {1, 2, 3, 4}}}));
    EXPECT_EQ(told(cursor_mode::marks), (std::vector<record>{{1, {1, 1, 0, 0}}, {1, {2, 2, 0, 0}}}));
    EXPECT_EQ(told(cursor_mode::curve), (std::vector<record>{{7, {1, 1, 0, 0}}, {8, {2, 2, 0, 0}}, {8, {3, 3, 0, 0}}}));
    EXPECT_EQ(told(cursor_mode::lengthyObject), (std::vector<record>{{7, {4, 4, 0, 0}}, {8, {5, 5, 0, 0}}}));
    state.selectionActive = false;
    EXPECT_TRUE(told(cursor_mode::rectangle).empty());
    EXPECT_TRUE(told(cursor_mode::section).empty());

    state.selectionActive = true;
    state.mode = cursor_mode::rectangle;
    SPMDataStream part = outline();
    surface::copy_selected(part, image(), surface::data_selections(state, {6, 4}));
    EXPECT_EQ(samples(part), std::vector<short>({11, 12, 13, 14, 15, 111, 112, 113, 114, 115}));
    state.mode = cursor_mode::marks;
    SPMDataStream none = outline();
    surface::copy_selected(none, image(), surface::data_selections(state, {6, 4}));
    EXPECT_EQ(none.array_length(), 0u);
}

} // namespace
