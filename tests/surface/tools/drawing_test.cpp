// What is drawn over the picture, operation by operation.
#include "support/RecordingDC.h"
#include "surface/figures/overlay_bitmap.h"
#include "surface/overlay/mark_drawing.h"
#include "surface/overlay/overlay_geometry.h"
#include "surface/tools/overlay_drawing.h"
#include "view/scale/render_step.h"

#include <gtest/gtest.h>

namespace {

using surface::cursor_mode;

// Ten pixels a sample, 20 by 10 samples; row 0 is the lowest.
const view::view_geometry geometry{CRect(100, 50, 300, 150), CRect(0, 0, 20, 10)};

surface::selection_state dragging(cursor_mode mode)
{
    surface::selection_state state;
    state.mode = mode;
    state.selectionActive = true;
    state.tracking = true;
    state.selection = {2, 1, 12, 5};
    return state;
}

TEST(RenderStep, PartsOfTheImageAreFoundInThePicture)
{
    struct part_case {
        CRect part, window;
        CSize size;
        CRect shown;
    };
    const part_case cases[] = {
        {{2, 1, 5, 3}, {0, 0, 20, 10}, {20, 10}, {2, 1, 5, 3}},       // a pixel a sample
        {{2, 1, 5, 3}, {0, 0, 20, 10}, {200, 100}, {20, 10, 50, 30}}, // ten pixels
        {{5, 3, 2, 1}, {0, 0, 20, 10}, {200, 100}, {20, 10, 50, 30}}, // drawn backwards
        {{2, 1, 5, 3}, {1, 1, 6, 6}, {50, 50}, {10, 0, 40, 20}},      // zoomed
        {{0, 0, 2, 1}, {0, 0, 2, 2}, {225, 225}, {0, 0, 225, 112}},   // pixel 112 has the sample boundary in its middle
        {{3, 3, 4, 4}, {0, 0, 100, 100}, {10, 10}, {0, 0, 1, 1}},     // part of a pixel
        {{99, 99, 100, 100}, {0, 0, 100, 100}, {10, 10}, {9, 9, 10, 10}},
        {{0, 0, 5, 5}, {5, 0, 10, 10}, {50, 100}, {}}, // out of sight
    };
    for (const part_case& each : cases)
        EXPECT_EQ(view::shown_part(each.part, each.window, each.size), each.shown) << each.part.left;
}

TEST(SelectionDrawing, RegionsAreFilledWhenTheDragIsOver)
{
    surface::selection_state state = dragging(cursor_mode::rectangle);
    state.tracking = false;
    state.region = CRgn(CRect(2, 1, 12, 5));
    for (const auto& [fill, area] : {std::pair{surface::selection_style::inner, 100 * 40},
                                     std::pair{surface::selection_style::outer, 200 * 100 - 100 * 40},
                                     std::pair{surface::selection_style::none, 0}}) {
        RecordingDC filled;
        surface::draw_selection(filled, state, geometry, {fill, 0x123456});
        int found = 0;
        for (const drawn& each : filled.all(drawn::kind::region))
            if (each.brush == CBrush::hatched(HS_BDIAGONAL, 0x123456)) {
                EXPECT_EQ(each.tools.backMode, TRANSPARENT);
                found = each.box.Width() * each.box.Height();
            }
        const int box = fill == surface::selection_style::outer ? 200 * 100 : area;
        EXPECT_EQ(found, box) << fill;
    }
}

TEST(SelectionDrawing, AnglesGetTheirSecondArmLast)
{
    surface::selection_state state = dragging(cursor_mode::angle);
    state.firstArm = {0, 0, 5, 0};
    for (const auto& [pending, arms] : {std::pair{true, 1u}, std::pair{false, 2u}}) {
        state.angleFirstArmPending = pending;
        RecordingDC dc;
        surface::draw_selection(dc, state, geometry, {});
        EXPECT_EQ(dc.all(drawn::kind::lines).size(), arms);
    }
    state.selectionActive = false;
    RecordingDC nothing;
    surface::draw_selection(nothing, state, geometry, {});
    EXPECT_TRUE(nothing.operations.empty());
}

TEST(OverlayBitmap, FewerBitsAreLookedUp)
{
    struct packed {
        BITMAPINFOHEADER header;
        std::uint8_t bytes[64];
    };
    // 3 x 2 pixels, rows on four bytes, the lower row first; palettes as blue, green, red and one more.
    const auto shown = [](unsigned bits, unsigned colors, std::initializer_list<int> bytes) {
        packed block{{.biWidth = 3, .biHeight = 2, .biBitCount = static_cast<std::uint16_t>(bits), .biClrUsed = colors},
                     {}};
        std::ranges::copy(bytes, block.bytes);
        surface::overlay_bitmap overlay;
        const CBitmap bitmap = overlay.of(block.header);
        std::vector<unsigned> out;
        for (int i = 0; i < 6; ++i) {
            const auto at = [&](int k) { return std::to_integer<unsigned>(bitmap.bits[4 * i + k]); };
            out.push_back(at(2) << 16 | at(1) << 8 | at(0));
        }
        EXPECT_EQ(bitmap.header.biBitCount, 32);
        return out;
    };
    using colors = std::vector<unsigned>;
    EXPECT_EQ(shown(1, 2, {1, 2, 3, 0, 4, 5, 6, 0, 0b10100000, 0, 0, 0, 0b01000000, 0, 0, 0}),
              (colors{0x060504, 0x030201, 0x060504, 0x030201, 0x060504, 0x030201}));
    EXPECT_EQ(shown(4, 0, {0x0f, 0x80, 0, 0, 0x11, 0x20, 0, 0}),
              (colors{0x000000, 0xffffff, 0x888888, 0x111111, 0x111111, 0x222222}))
        << "a sixteenth of white a step";
    EXPECT_EQ(shown(8, 1, {9, 8, 7, 0, 0, 1, 0, 0, 255, 0, 0, 0}),
              (colors{0x070809, 0x000000, 0x070809, 0x000000, 0x070809, 0x070809}))
        << "what the palette does not have is black";
    EXPECT_EQ(shown(16, 0, {0x1f, 0, 0xe0, 0x03, 0, 0x7c, 0, 0, 0xff, 0x7f, 0, 0, 0x10, 0x42}),
              (colors{0x0000ff, 0x00ff00, 0xff0000, 0xffffff, 0x000000, 0x838383}))
        << "16 of 31 are 131 of 255";
}

TEST(MarkDrawing, MarksOutsideTheZoomedPartHaveNoNumbers)
{
    const view::view_geometry zoomed{CRect(100, 50, 300, 150), CRect(5, 2, 15, 7)};
    RecordingDC dc;
    surface::draw_marks(dc, {{5, 2}, {4, 3}, {15, 3}, {9, 1}, {9, 7}, {14, 6}}, zoomed, {});
    std::string numbers;
    for (const drawn& each : dc.all(drawn::kind::text)) numbers += each.text;
    EXPECT_EQ(numbers, "16");
}

TEST(CurveDrawing, VerticesThatWouldCoverEachOtherAreLeftOut)
{
    RecordingDC dc;
    surface::draw_curves(dc, {{{0, 0}, {10, 0}, {10, 5}}, {{0, 0}, {0, 0}, {9, 9}}, {}}, geometry);
    const std::vector<drawn> circles = dc.all(drawn::kind::ellipse);
    ASSERT_EQ(circles.size(), 5u) << "3 of the active curve, 2 of the other";
    EXPECT_EQ(circles[0].box, CRect(102, 142, 108, 148)) << "radius 3 around 105, 145";
    EXPECT_EQ(circles[0].tools.brush, CBrush::solid(0x0000FF));
    EXPECT_EQ(circles[1].tools.brush, CBrush::solid(0x00FF00));
    EXPECT_EQ(circles[3].box.Width(), 4) << "not active";
    EXPECT_EQ(dc.all(drawn::kind::lines).size(), 2u);
}

} // namespace
