#include "platform/draw/Region.h"

#include "base/streams/rounding.h"
#include "platform/draw/polygon_spans.h"

#include <pixman.h>

using namespace vldv;

// pixman keeps a region as bands: half-open boxes (x2 and y2 lie outside) ordered by y, then by x. All boxes of a band
// share their upper and lower edge, boxes that touch in a band are one box, and bands with equal boxes that touch are
// one band. The form of a set is therefore unique, and two regions hold the same pixels exactly when their boxes are
// equal.
struct CRgn::bands {
    pixman_region32_t region;

    bands() noexcept { pixman_region32_init(&region); }
    bands(const bands&) = delete;
    bands& operator=(const bands&) = delete;
    ~bands() { pixman_region32_fini(&region); }
};

namespace {

void check(pixman_bool_t done)
{
    if (!done) throw std::bad_alloc();
}

pixman_box32_t box_of(const RECT& rect) noexcept
{
    CRect ordered(rect);
    ordered.NormalizeRect();
    return {ordered.left, ordered.top, ordered.right, ordered.bottom};
}

CRect rect_of(const pixman_box32_t& box) noexcept { return {box.x1, box.y1, box.x2, box.y2}; }

CPoint carried(const XFORM& map, int x, int y) noexcept
{
    return {base::nearest_int(x * map.m11 + y * map.m21 + map.dx),
            base::nearest_int(x * map.m12 + y * map.m22 + map.dy)};
}

} // namespace

CRgn::CRgn() : held(std::make_unique<bands>()) {}

CRgn::CRgn(const RECT& rect) : CRgn()
{
    const pixman_box32_t box = box_of(rect);
    if (box.x1 < box.x2 && box.y1 < box.y2) pixman_region32_reset(&held->region, &box);
}

CRgn::CRgn(const CRgn& other) : CRgn() { check(pixman_region32_copy(&held->region, &other.held->region)); }
CRgn::CRgn(CRgn&& other) noexcept : CRgn() { held.swap(other.held); }

CRgn& CRgn::operator=(const CRgn& other)
{
    if (this != &other) check(pixman_region32_copy(&held->region, &other.held->region));
    return *this;
}

CRgn& CRgn::operator=(CRgn&& other) noexcept
{
    held.swap(other.held);
    return *this;
}

CRgn::~CRgn() = default;

CRgn CRgn::ofSpans(std::span<const platform::pixel_span> spans)
{
    std::vector<pixman_box32_t> boxes;
    boxes.reserve(spans.size());
    for (const platform::pixel_span& span : spans) boxes.push_back({span.left, span.y, span.right, span.y + 1});
    CRgn out;
    // All boxes go in at once: pixman sorts and merges them. Adding them one by one would copy the growing list each
    // time. The call overwrites the empty region of the constructor, so that this one is released first.
    pixman_region32_fini(&out.held->region);
    check(pixman_region32_init_rects(&out.held->region, boxes.data(), static_cast<int>(boxes.size())));
    return out;
}

CRgn CRgn::united(std::span<const CRect> rects)
{
    std::vector<pixman_box32_t> boxes;
    boxes.reserve(rects.size());
    for (const CRect& rect : rects) boxes.push_back({rect.left, rect.top, rect.right, rect.bottom});
    CRgn out;
    pixman_region32_fini(&out.held->region);
    check(pixman_region32_init_rects(&out.held->region, boxes.data(), static_cast<int>(boxes.size())));
    return out;
}

CRgn CRgn::ellipse(const RECT& rect)
{
    CRect ordered(rect);
    ordered.NormalizeRect();
    return ofSpans(platform::ellipse_spans(ordered));
}

CRgn CRgn::polygon(std::span<const CPoint> points, poly_fill_mode mode)
{
    const std::vector<CPoint> figure(points.begin(), points.end());
    return polygons({&figure, 1}, mode);
}

CRgn CRgn::polygons(std::span<const std::vector<CPoint>> figures, poly_fill_mode mode)
{
    return ofSpans(platform::polygon_spans(figures, mode == WINDING));
}

CRgn CRgn::combined(const CRgn& a, const CRgn& b, region_mode mode)
{
    CRgn out;
    out.CombineRgn(a, b, mode);
    return out;
}

bool CRgn::CombineRgn(const CRgn& a, const CRgn& b, region_mode mode)
{
    if (mode == RGN_XOR) {
        // pixman has no symmetric difference: it is (a - b) + (b - a). This region may be `a` or `b`, so that the
        // second part is computed before the first one overwrites it.
        const CRgn onlyB = combined(b, a, RGN_DIFF);
        CombineRgn(a, b, RGN_DIFF);
        return CombineRgn(*this, onlyB, RGN_OR);
    }
    pixman_region32_t* target = &held->region;
    pixman_region32_t *first = &a.held->region, *second = &b.held->region;
    switch (mode) {
    case RGN_AND:
        check(pixman_region32_intersect(target, first, second));
        break;
    case RGN_OR:
        check(pixman_region32_union(target, first, second));
        break;
    case RGN_DIFF:
        check(pixman_region32_subtract(target, first, second));
        break;
    default:
        *this = a;
        break;
    }
    return !isEmpty();
}

void CRgn::OffsetRgn(int dx, int dy) { pixman_region32_translate(&held->region, dx, dy); }

bool CRgn::isEmpty() const noexcept { return !pixman_region32_not_empty(&held->region); }

CRect CRgn::GetRgnBox() const noexcept
{
    return isEmpty() ? CRect() : rect_of(*pixman_region32_extents(&held->region));
}

bool CRgn::PtInRegion(CPoint point) const noexcept
{
    return pixman_region32_contains_point(&held->region, point.x, point.y, nullptr);
}

bool CRgn::RectInRegion(const RECT& rect) const noexcept
{
    pixman_box32_t box = box_of(rect);
    return pixman_region32_contains_rectangle(&held->region, &box) != PIXMAN_REGION_OUT;
}

bool CRgn::operator==(const CRgn& other) const noexcept
{
    return pixman_region32_equal(&held->region, &other.held->region);
}

std::vector<CRect> CRgn::rectangles() const
{
    int count = 0;
    const pixman_box32_t* boxes = pixman_region32_rectangles(&held->region, &count);
    std::vector<CRect> out;
    out.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) out.push_back(rect_of(boxes[i]));
    return out;
}

std::int64_t CRgn::area() const noexcept
{
    int count = 0;
    const pixman_box32_t* boxes = pixman_region32_rectangles(&held->region, &count);
    std::int64_t sum = 0;
    for (int i = 0; i < count; ++i)
        sum += (std::int64_t{boxes[i].x2} - boxes[i].x1) * (std::int64_t{boxes[i].y2} - boxes[i].y1);
    return sum;
}

CRgn CRgn::transformed(const XFORM& map) const
{
    CRgn out;
    // Under a map without a turn, edges that two rectangles share are carried to the same integers: neither gaps nor
    // overlaps arise between them. A rectangle that shrinks to no width or height adds nothing.
    for (const CRect& rect : rectangles()) {
        const CPoint a = carried(map, rect.left, rect.top), c = carried(map, rect.right, rect.bottom);
        if (map.isAxisAligned()) {
            out.CombineRgn(out, CRgn(CRect(a, c)), RGN_OR);
        } else {
            const CPoint corners[] = {a, carried(map, rect.right, rect.top), c, carried(map, rect.left, rect.bottom)};
            out.CombineRgn(out, polygon(corners, ALTERNATE), RGN_OR);
        }
    }
    return out;
}

CRgn CRgn::frame(int width, int height) const
{
    // A pixel lies inside when its neighbours up to `width` to the left and right and up to `height` above and below
    // all belong to the region. Each distance needs its own shift: one shift by the whole width would step over a gap
    // that is narrower than that.
    CRgn inside(*this);
    const auto erode = [&](int dx, int dy) {
        CRgn moved(*this);
        moved.OffsetRgn(dx, dy);
        inside.CombineRgn(inside, moved, RGN_AND);
    };
    for (int i = 1; i <= width; ++i) erode(i, 0), erode(-i, 0);
    for (int i = 1; i <= height; ++i) erode(0, i), erode(0, -i);
    return combined(*this, inside, RGN_DIFF);
}
