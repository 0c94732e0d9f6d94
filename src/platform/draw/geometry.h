#pragma once
#include <algorithm>
#include <cstdint>

struct CSize {
    int cx = 0, cy = 0;
    bool operator==(const CSize&) const = default;
};

struct CPoint {
    int x = 0, y = 0;
    bool operator==(const CPoint&) const = default;
    CPoint operator+(CSize by) const noexcept { return {x + by.cx, y + by.cy}; }
    CPoint operator-(CSize by) const noexcept { return {x - by.cx, y - by.cy}; }
    CSize operator-(CPoint from) const noexcept { return {x - from.x, y - from.y}; }
};

namespace vldv {
/// A place between the points of a grid.
struct fine_point {
    double x = 0.0, y = 0.0;
};
} // namespace vldv

/// A rectangle as records and callers pass it: right and bottom lie outside.
struct RECT {
    std::int32_t left = 0, top = 0, right = 0, bottom = 0;
    bool operator==(const RECT&) const = default;
};

/// A rectangle with what one does with it. Corners may be crossed until `NormalizeRect`.
struct CRect : RECT {
    CRect() = default;
    CRect(int left_, int top_, int right_, int bottom_) noexcept : RECT{left_, top_, right_, bottom_} {}
    CRect(const RECT& source) noexcept : RECT(source) {}
    CRect(CPoint corner, CSize size) noexcept : RECT{corner.x, corner.y, corner.x + size.cx, corner.y + size.cy} {}
    CRect(CPoint topLeft, CPoint bottomRight) noexcept : RECT{topLeft.x, topLeft.y, bottomRight.x, bottomRight.y} {}

    int Width() const noexcept { return right - left; }
    int Height() const noexcept { return bottom - top; }
    CSize Size() const noexcept { return {Width(), Height()}; }
    CPoint TopLeft() const noexcept { return {left, top}; }
    CPoint BottomRight() const noexcept { return {right, bottom}; }
    /// Halves are cut off.
    CPoint CenterPoint() const noexcept { return {(left + right) / 2, (top + bottom) / 2}; }
    /// No pixel lies inside.
    bool IsRectEmpty() const noexcept { return left >= right || top >= bottom; }
    bool PtInRect(CPoint point) const noexcept
    {
        return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
    }

    void SetRectEmpty() noexcept { *this = {}; }
    /// Puts crossed corners in order.
    void NormalizeRect() noexcept
    {
        if (left > right) std::swap(left, right);
        if (top > bottom) std::swap(top, bottom);
    }
    void OffsetRect(int dx, int dy) noexcept { *this = {left + dx, top + dy, right + dx, bottom + dy}; }
    void OffsetRect(CSize by) noexcept { OffsetRect(by.cx, by.cy); }
    void InflateRect(int dx, int dy) noexcept { InflateRect(dx, dy, dx, dy); }
    void InflateRect(int l, int t, int r, int b) noexcept { *this = {left - l, top - t, right + r, bottom + b}; }
    /// The common part of both; \return false, with this made all zeros, when there is none.
    bool IntersectRect(const RECT& a, const RECT& b) noexcept
    {
        *this = {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                 std::min(a.bottom, b.bottom)};
        if (IsRectEmpty()) SetRectEmpty();
        return !IsRectEmpty();
    }
    /// The smallest rectangle around both; an empty one does not count. \return false when both are empty
    bool UnionRect(const RECT& a, const RECT& b) noexcept
    {
        if (CRect(a).IsRectEmpty()) {
            *this = b;
        } else if (CRect(b).IsRectEmpty()) {
            *this = a;
        } else {
            *this = {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
                     std::max(a.bottom, b.bottom)};
        }
        if (IsRectEmpty()) SetRectEmpty();
        return !IsRectEmpty();
    }
};

/// Width and height of a block of samples.
struct IppiSize {
    std::int32_t width = 0, height = 0;
};

/// A plane affine map: x' = x m11 + y m21 + dx, y' = x m12 + y m22 + dy.
struct XFORM {
    double m11 = 1.0, m12 = 0.0, m21 = 0.0, m22 = 1.0, dx = 0.0, dy = 0.0;
    bool operator==(const XFORM&) const = default;

    /// The map that does this one first and `next` after it.
    XFORM then(const XFORM& next) const noexcept
    {
        return {m11 * next.m11 + m12 * next.m21,         m11 * next.m12 + m12 * next.m22,
                m21 * next.m11 + m22 * next.m21,         m21 * next.m12 + m22 * next.m22,
                dx * next.m11 + dy * next.m21 + next.dx, dx * next.m12 + dy * next.m22 + next.dy};
    }
    double determinant() const noexcept { return m11 * m22 - m12 * m21; }
    /// The way back; the map itself when there is none.
    XFORM inverse() const noexcept
    {
        const double det = determinant();
        if (det == 0.0) return *this;
        return {m22 / det, -m12 / det, -m21 / det, m11 / det, (m21 * dy - m22 * dx) / det, (m12 * dx - m11 * dy) / det};
    }
    bool isAxisAligned() const noexcept { return m12 == 0.0 && m21 == 0.0; }
};
