#include "platform/draw/DC.h"
#include "platform/draw/vector_page.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>

extern "C" IVectorPage* vldv_make_vector_page(const platform::vector_page_form& form);

using testing::HasSubstr;
using testing::Not;

namespace {

using platform::vector_format;

std::string made(vector_format format, CSize pixels, const std::function<void(CDC&)>& draw)
{
    const std::unique_ptr<IVectorPage> page(vldv_make_vector_page({format, pixels, L"One & two\x01"}));
    draw(page->dc());
    const std::vector<std::byte> bytes = page->finish();
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

TEST(VectorPages, HaveTheSizeOfThePictureAndItsTitle)
{
    const auto nothing = [](CDC&) {};
    const std::string svg = made(vector_format::svg, {192, 96}, nothing);
    EXPECT_THAT(svg, HasSubstr("width=\"50.8mm\" height=\"25.4mm\"")) << "96 pixels are an inch";
    EXPECT_THAT(svg, HasSubstr("viewBox=\"0 0 192 96\""));
    EXPECT_THAT(svg, HasSubstr("<title>One &amp; two </title>"));
    EXPECT_THAT(made(vector_format::pdf, {587, 215}, nothing), HasSubstr("/MediaBox [0 0 441.000000 162.000000]"))
        << "440.25 by 161.25 points";
}

TEST(VectorPages, CutWhatLiesOutsideOfTheClip)
{
    const std::string svg = made(vector_format::svg, {200, 100}, [](CDC& dc) {
        dc.IntersectClipRect({10, 10, 60, 60});
        dc.SelectObject(CPen::solid(1, 0));
        // Lines run through the middles of pixels. In at x = 10, out at y = 60, back in at x = 60 and out at x = 10.
        dc.Polyline(std::vector<CPoint>{{0, 30}, {40, 30}, {40, 80}, {80, 80}, {80, 50}, {0, 50}});
        dc.FillSolidRect({50, 50, 90, 90}, 0x0000FF);
        dc.TextOut(20, 20, L"<inside\x02>");
        dc.TextOut(100, 70, L"outside");
    });
    EXPECT_THAT(svg, HasSubstr("d=\"M10,30.5 L40.5,30.5 L40.5,60 M60,50.5 L10,50.5\""));
    // Which corner comes first is the toolkit's choice.
    EXPECT_THAT(svg, HasSubstr("M60,50 L60,60 L50,60 L50,50"));
    EXPECT_THAT(svg, HasSubstr(">&lt;inside &gt;</text>"));
    EXPECT_THAT(svg, Not(HasSubstr("outside")));
}

TEST(VectorPages, HatchWithStripesThatEveryViewerShows)
{
    const auto hatched = [](hatch_style hatch, const CRect& where) {
        return made(vector_format::svg, {100, 100}, [&](CDC& dc) {
            dc.SetBkMode(TRANSPARENT);
            dc.FillRect(where, CBrush::hatched(hatch, 0));
        });
    };
    // Every 8 units from the page's corner, 1 unit wide.
    const std::string rows = hatched(HS_HORIZONTAL, {20, 4, 30, 14});
    EXPECT_THAT(rows, HasSubstr("M20,8 L30,8 L30,9 L20,9 L20,8"));
    EXPECT_THAT(rows, Not(HasSubstr("pattern")));
    EXPECT_THAT(hatched(HS_VERTICAL, {4, 20, 14, 30}), HasSubstr("M8,20 L8,30 L9,30 L9,20 L8,20"));
    // Of y = x only a corner lies inside: x - y from 0 to 1.
    EXPECT_THAT(hatched(HS_FDIAGONAL, {10, 10, 12, 12}), HasSubstr("L12,12 L12,11"));
}

} // namespace
