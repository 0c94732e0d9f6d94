#include "spectra/figures/fourier_selection.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace vldv::spectra {

CRect mirror_rect(const CRect& rect) noexcept { return {-rect.left, -rect.top, -rect.right, -rect.bottom}; }

CPoint normalize_point(CPoint point, int height) noexcept
{
    if (point.x < 0) point = {-point.x, -point.y};
    const int row = height > 0 ? point.y % height : 0;
    return {point.x, row < 0 ? row + height : row};
}

namespace {

/// Parts of a rectangle with left >= 0 on both sides of row 0.
void split_at_row_0(const CRect& rect, std::vector<CRect>& list)
{
    if (rect.top >= 0 || rect.bottom < 0) {
        list.push_back(rect);
        return;
    }
    list.emplace_back(rect.left, rect.top, rect.right, -1);
    list.emplace_back(rect.left, 0, rect.right, rect.bottom);
}

CRect mirrored(const CRect& rect)
{
    CRect image = mirror_rect(rect);
    image.NormalizeRect();
    return image;
}

} // namespace

void split_rect(CRect rect, std::vector<CRect>& list)
{
    rect.NormalizeRect();
    if (rect.left >= 0) return split_at_row_0(rect, list);
    if (rect.right < 0) return split_at_row_0(mirrored(rect), list);
    split_at_row_0(mirrored({rect.left, rect.top, -1, rect.bottom}), list);
    split_at_row_0({0, rect.top, rect.right, rect.bottom}, list);
}

namespace {

/// Marks bins in the packed form.
class mask_writer {
public:
    mask_writer(int width_, int height_, std::uint8_t* mask_, std::size_t stride_)
        : width(width_), height(height_), mask(mask_), stride(stride_)
    {
    }

    void clear() const
    {
        for (int y = 0; y < height; ++y) std::memset(row(y), 0, static_cast<std::size_t>(width));
    }

    /// Marks columns `first` … `last`, inside 0 … (W + 1) / 2, of a row of the spectrum.
    void mark(int first, int last, int y) const
    {
        const int ownFirst = std::max(first, 1), ownLast = std::min(last, (width - 1) / 2);
        if (ownFirst <= ownLast)
            std::memset(row(y) + 2 * ownFirst - 1, 1, static_cast<std::size_t>(2 * (ownLast - ownFirst + 1)));
        if (first == 0) markMirrored(0, y);
        if (width % 2 == 0 && first <= width / 2 && last >= width / 2) markMirrored(width - 1, y);
        // The leftmost column of a picture of odd width is one more than half of it: the mirror image of another.
        if (width % 2 != 0 && last > width / 2) mark(width / 2, width / 2, (height - y) % height);
    }

private:
    std::uint8_t* row(int y) const { return mask + static_cast<std::size_t>(y) * stride; }

    /// A column that mirrors itself keeps both parts of bin r, or of its mirror image H - r, below each other.
    void markMirrored(int x, int y) const
    {
        const int r = std::min(y, height - y);
        if (r == 0) {
            row(0)[x] = 1;
            return;
        }
        row(2 * r - 1)[x] = 1;
        if (2 * r < height) row(2 * r)[x] = 1;
    }

    int width, height;
    std::uint8_t* mask;
    std::size_t stride;
};

/// Columns of a part that lie in its ellipse, in a row of it: the middle of the bin counts.
struct column_span {
    int first, last;
};
column_span ellipse_columns(const CRect& part, int y)
{
    // Twice the bins' distances from the centre and the whole axes: whole numbers, so that the border is exact.
    const double a = double(part.right) - part.left + 1, b = double(part.bottom) - part.top + 1;
    const double dy = 2.0 * y - part.top - part.bottom;
    const auto inside = [&](double x) {
        const double dx = 2.0 * x - part.left - part.right;
        return dx * dx * b * b + dy * dy * a * a <= a * a * b * b;
    };
    const double reach = 0.5 * a * std::sqrt(std::max(0.0, 1.0 - dy * dy / (b * b)));
    double first = std::ceil(0.5 * (double(part.left) + part.right) - reach);
    // The root may have missed the border by a bin.
    if (inside(first - 1.0)) first -= 1.0;
    if (!inside(first)) first += 1.0;
    const int from = static_cast<int>(first);
    // The ellipse mirrors itself, and so do the middles of the bins.
    return {from, part.right - (from - part.left)};
}

} // namespace

void fill_selection_mask(std::span<const CRect> list, selection_shape shape, int width, int height, std::uint8_t* mask,
                         std::size_t stride)
{
    const mask_writer writer(width, height, mask, stride);
    writer.clear();
    if (width <= 0 || height <= 0) return;
    const int lastColumn = (width + 1) / 2, lastRow = (height + 1) / 2;
    for (const CRect& part : list)
        for (int y = std::max(part.top, -lastRow); y <= std::min(part.bottom, lastRow); ++y) {
            const auto [first, last] =
                shape == selection_shape::elliptic ? ellipse_columns(part, y) : column_span{part.left, part.right};
            if (first <= std::min(last, lastColumn))
                writer.mark(std::max(first, 0), std::min(last, lastColumn), normalize_point({0, y}, height).y);
        }
}

} // namespace vldv::spectra
