#include "surface/overlay/decoration_drawing.h"

#include "base/text.h"
#include "platform/app/dpi.h"
#include "surface/overlay/overlay_geometry.h"

#include <algorithm>
#include <cstdlib>
#include <span>

namespace vldv::surface {

namespace {

/// Pixels of one side of a display: which entries of a mask each shows, the first and one past the last.
struct shown_span {
    int first = 0, last = 0;
};

/// \param pixels     of the display
/// \param from, to   samples at its ends
/// \param at, side   place of the mask, samples
/// \param entries    of the mask along this side
std::vector<shown_span> spans(int pixels, int from, int to, int at, int side, int entries)
{
    std::vector<shown_span> out(static_cast<std::size_t>(std::max(pixels, 0)));
    const auto entry = [=](double sample) { return (sample - at) * entries / side; };
    const double step = static_cast<double>(to - from) / pixels;
    for (std::size_t i = 0; i < out.size(); ++i) {
        // Samples whose pixels begin before this one ends; one at least, the one under the pixel's centre.
        const double low = entry(from + step * static_cast<double>(i));
        const double high = entry(from + step * static_cast<double>(i + 1));
        const double middle = std::floor((low + high) / 2);
        const int first = static_cast<int>(std::min(std::ceil(low), middle));
        const int last = static_cast<int>(std::max(std::ceil(high), middle + 1));
        out[i] = {std::clamp(first, 0, entries), std::clamp(last, 0, entries)};
    }
    return out;
}

/// Along a row of pixels, what is covered: 1 where one of the entries of any of the rows is not 0.
class covered_row {
public:
    covered_row(const document::decoration::element& mask_, std::span<const shown_span> columns_)
        : mask(mask_), columns(columns_)
    {
        if (columns.empty()) return;
        first = columns.front().first;
        entries.resize(static_cast<std::size_t>(std::max(columns.back().last - first, 0)));
    }
    /// The rectangles of that row, `top` the pixel's own.
    void append(shown_span rows, int left, int top, std::vector<CRect>& out)
    {
        std::ranges::fill(entries, static_cast<unsigned char>(0));
        for (int y = rows.first; y < rows.last; ++y) {
            const unsigned char* const row = mask.bytes.data() + static_cast<std::size_t>(y) * mask.width + first;
            for (std::size_t x = 0; x < entries.size(); ++x)
                entries[x] = static_cast<unsigned char>(entries[x] | row[x]);
        }
        if (std::ranges::all_of(entries, [](unsigned char each) { return each == 0; })) return;
        const auto isCovered = [this](std::size_t pixel) {
            const auto begin = entries.begin();
            return std::any_of(begin + (columns[pixel].first - first), begin + (columns[pixel].last - first),
                               [](unsigned char each) { return each != 0; });
        };
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (!isCovered(i)) continue;
            const std::size_t begin = i;
            while (i + 1 < columns.size() && isCovered(i + 1)) ++i;
            out.push_back({left + static_cast<int>(begin), top, left + static_cast<int>(i) + 1, top + 1});
        }
    }

private:
    const document::decoration::element& mask;
    std::span<const shown_span> columns;
    int first = 0;                      ///< entry of the mask
    std::vector<unsigned char> entries; ///< of the columns
};

void draw_points(CDC& dc, const std::vector<CPoint>& points, colorEntry color, bool isSelected)
{
    const int half = CorrectDPISize(isSelected ? 4 : 2);
    for (const CPoint& at : points)
        dc.FillSolidRect({at.x - half, at.y - half, at.x + half + 1, at.y + half + 1}, color);
}

CRect place_of(const double* corner, const drawing_axes& axes)
{
    CRect place(sample_of(corner[0], axes.x), sample_of(corner[1], axes.y), sample_of(corner[2], axes.x),
                sample_of(corner[3], axes.y));
    place.NormalizeRect();
    return place;
}

/// \param areSamples  bitmaps of the image's size lie on its samples
void draw_bitmaps(CDC& dc, const document::decoration& drawing, bool areSamples, const drawing_axes& axes,
                  const view::view_geometry& geometry)
{
    CRect clip = dc.GetClipBox();
    clip.InflateRect(1, 1); // rounded where logical units are larger than those of the device
    for (std::size_t i = 0; i < drawing.elements.size() && 4 * i + 3 < drawing.coordinates.size(); ++i) {
        const document::decoration::element& bitmap = drawing.elements[i];
        const CSize size{static_cast<int>(bitmap.width), static_cast<int>(bitmap.height)};
        const CRect place =
            areSamples && size == axes.image ? CRect({0, 0}, size) : place_of(drawing.coordinates.data() + 4 * i, axes);
        const CRgn covered = mask_region(bitmap, place, geometry, clip);
        if (!covered.isEmpty()) dc.FillRgn(covered, CBrush::solid(static_cast<colorEntry>(drawing.color)));
    }
}

/// By the weights of Rec. 709.
bool is_light(colorEntry color)
{
    return 0.2126 * (color & 255u) + 0.7152 * (color >> 8 & 255u) + 0.0722 * (color >> 16 & 255u) > 127.5;
}

void draw_text(CDC& dc, const document::decoration& drawing, CPoint at)
{
    const auto color = static_cast<colorEntry>(drawing.color);
    dc.SetTextColor(color);
    dc.SetBkColor(is_light(color) ? 0x000000 : 0xFFFFFF);
    const std::uint32_t before = dc.SetTextAlign(TA_LEFT | TA_BOTTOM);
    dc.TextOut(at.x + CorrectDPISize(4), at.y - CorrectDPISize(2), base::widen(drawing.text));
    dc.SetTextAlign(before);
}

void draw_one(CDC& dc, const document::decoration& drawing, bool areSamples, const drawing_axes& axes,
              const view::view_geometry& geometry)
{
    const auto color = static_cast<colorEntry>(drawing.color);
    const bool isSelected = (drawing.state & DECORATION_SELECTED) != 0;
    if (drawing.type == DECORATION_BITMAP) return draw_bitmaps(dc, drawing, areSamples, axes, geometry);
    if (drawing.type == DECORATION_BLOCK || drawing.type == DECORATION_VOLUME) return;
    const std::vector<CPoint> points = to_client(samples_of(drawing, axes), geometry);
    if (points.empty()) return;
    const bool arePoints = drawing.type == DECORATION_POINTS || drawing.type == DECORATION_POINTS_3D;
    if (arePoints || points.size() == 1) {
        draw_points(dc, points, color, isSelected);
    } else {
        dc.SelectObject(CPen::solid(CorrectDPISize(isSelected ? 3 : 1), color));
        dc.Polyline(points);
        if (isSelected) draw_points(dc, points, color, false);
    }
    if (!drawing.text.empty()) draw_text(dc, drawing, points.front());
}

} // namespace

CRgn mask_region(const document::decoration::element& mask, const CRect& place, const view::view_geometry& geometry,
                 const CRect& clip)
{
    const std::size_t bytes = std::size_t{mask.width} * mask.height;
    if (place.IsRectEmpty() || geometry.display.IsRectEmpty() || bytes == 0 || mask.bytes.size() < bytes) return {};
    const CRect& display = geometry.display;
    const CRect& source = geometry.source;
    const std::vector<shown_span> columns =
        spans(display.Width(), source.left, source.right, place.left, place.Width(), static_cast<int>(mask.width));
    const std::vector<shown_span> rows =
        spans(display.Height(), source.top, source.bottom, place.top, place.Height(), static_cast<int>(mask.height));
    CRect wanted;
    if (!wanted.IntersectRect(display, clip)) return {};
    covered_row row(mask, std::span(columns).subspan(static_cast<std::size_t>(wanted.left - display.left),
                                                     static_cast<std::size_t>(wanted.Width())));
    std::vector<CRect> parts;
    for (int y = wanted.top; y < wanted.bottom; ++y)
        row.append(rows[static_cast<std::size_t>(display.bottom - 1 - y)], wanted.left, y, parts);
    return CRgn::united(parts);
}

void draw_decorations(CDC& dc, const document::decorations& drawings, const drawing_axes& axes,
                      const view::view_geometry& geometry)
{
    const int saved = dc.SaveDC();
    dc.SetBkMode(TRANSPARENT);
    dc.setTextRim(true);
    for (const auto& [key, group] : drawings.all())
        for (const document::decoration& each : group.members)
            draw_one(dc, each, key == lengthyMaskKey, axes, geometry);
    dc.RestoreDC(saved);
}

} // namespace vldv::surface
