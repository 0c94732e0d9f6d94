#include "curves/views/section_on_surface.h"

#include "base/streams/rounding.h"
#include "curves/views/SectionView.h"
#include "platform/app/dpi.h"

#include <cmath>

namespace vldv::curves {

namespace {

constexpr colorEntry firstColor = 0x0000FF, otherColor = 0x00FF00, markColor = 0xFF0000, shadowColor = 0xC0C0C0;

} // namespace

void draw_section_mark(CDC& dc, CPoint tip, double angle, int size)
{
    const double height = CorrectDPISize(size), half = height / 3.0;
    const double along = std::cos(angle), across = std::sin(angle);
    const auto turned = [&](double x, double y) {
        return CPoint{tip.x + base::nearest_int(x * along - y * across),
                      tip.y + base::nearest_int(x * across + y * along)};
    };
    const CPoint corners[] = {tip, turned(-half, -height), turned(half, -height)};
    dc.SelectObject(CPen::solid(1, markColor));
    dc.SelectObject(CBrush::solid(markColor));
    dc.Polygon(corners);
}

void draw_section_point(CDC& dc, CPoint at, int size, bool isFirst)
{
    const int side = CorrectDPISize(3 * size), before = side / 2;
    dc.FillSolidRect({at.x - before, at.y - before, at.x - before + side, at.y - before + side},
                     isFirst ? firstColor : otherColor);
}

} // namespace vldv::curves

using namespace vldv;

void CSectionView::drawOn(CImageView& surface, CDC& dc, int shadow, int size, const CPen& line, const CPen& under,
                          bool withMarks)
{
    constexpr int surfaceDimensions = 2;
    const SPMDataStream* const source = stream();
    if (!source || source->get_dimensions_number() != surfaceDimensions || points.size() < 2) return;
    std::vector<CPoint> shown;
    for (const curves::grid_point& point : points)
        shown.push_back({surface.xsrc2clnt(point[0]), surface.ysrc2clnt(point[1])});
    const int saved = dc.SaveDC();
    dc.SetBkMode(TRANSPARENT);
    if (shadow > 0) {
        dc.SelectObject(CPen{PS_SOLID | PS_GEOMETRIC, shadow, curves::shadowColor, {}});
        dc.Polyline(shown);
    }
    for (const CPen& pen : {under, line}) {
        dc.SelectObject(pen);
        dc.Polyline(shown);
    }
    for (std::size_t i = 0; i < shown.size(); ++i) curves::draw_section_point(dc, shown[i], size, i == 0);
    if (withMarks && !section.isEmpty())
        for (const int mark : curves::active_marks(marksMode())) drawMarkOn(surface, dc, mark, size);
    dc.RestoreDC(saved);
}

void CSectionView::drawMarkOn(const CImageView& surface, CDC& dc, int mark, int size) const
{
    const std::int64_t sample = base::nearest_int(sampleOf(mark));
    const auto placeOf = [&](std::int64_t at) {
        const curves::grid_point found = curves::point_of_sample(points, section.segmentLengths, at);
        return CPoint{surface.xsrc2clnt(found[0]), surface.ysrc2clnt(found[1])};
    };
    // The line's direction where the mark stands, from the samples beside it.
    const CPoint before = placeOf(std::max<std::int64_t>(sample - 1, 0));
    const CPoint behind = placeOf(std::min<std::int64_t>(sample + 1, section.length - std::int64_t{1}));
    constexpr int markSize = 4; // of a point
    curves::draw_section_mark(dc, placeOf(sample), std::atan2(behind.y - before.y, behind.x - before.x),
                              markSize * size);
}
