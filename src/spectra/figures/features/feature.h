#pragma once
#include "platform/draw/geometry.h"
#include "primitives/mask/connected_runs.h"

#include <array>
#include <cstddef>
#include <iterator>
#include <vector>

namespace vldv::spectra {

constexpr std::size_t featureMetrics = 10;

/// The samples of a feature, row by row, in source coordinates. They lie as runs in the list that found the feature,
/// which has to outlive this.
class pixel_list {
public:
    using runs = primitives::growing_array<primitives::connected_runs::run>;

    pixel_list() = default;
    pixel_list(const runs& all_, std::uint32_t firstRun, std::int64_t count_, CPoint origin_)
        : all(&all_), first(firstRun), count(static_cast<std::size_t>(count_)), origin(origin_)
    {
    }

    std::size_t size() const noexcept { return count; }
    /// There must be one.
    CPoint front() const noexcept { return *begin(); }
    bool contains(CPoint point) const noexcept
    {
        bool found = false;
        forEachRun([&](int y, int left, int right) { found |= y == point.y && left <= point.x && point.x < right; });
        return found;
    }
    /// Calls `use(y, left, right)` for columns `left` to `right` - 1 of a row.
    template <class Use>
    void forEachRun(Use use) const
    {
        for (std::uint32_t i = first; i != primitives::connected_runs::none; i = (*all)[i].next)
            use((*all)[i].row + origin.y, (*all)[i].left + origin.x, (*all)[i].right + origin.x);
    }

    class iterator {
    public:
        using value_type = CPoint;
        using difference_type = std::ptrdiff_t;
        iterator() = default;
        iterator(const pixel_list* of_, std::uint32_t run_) : of(of_), run(run_) { enter(); }
        CPoint operator*() const noexcept { return {x + of->origin.x, (*of->all)[run].row + of->origin.y}; }
        iterator& operator++() noexcept
        {
            if (++x < (*of->all)[run].right) return *this;
            run = (*of->all)[run].next;
            enter();
            return *this;
        }
        iterator operator++(int) noexcept
        {
            const iterator before = *this;
            ++*this;
            return before;
        }
        bool operator==(const iterator& other) const noexcept { return run == other.run && x == other.x; }

    private:
        void enter() noexcept { x = run == primitives::connected_runs::none ? 0 : (*of->all)[run].left; }
        const pixel_list* of = nullptr;
        std::uint32_t run = primitives::connected_runs::none;
        int x = 0;
    };
    iterator begin() const noexcept { return {this, first}; }
    iterator end() const noexcept { return {this, primitives::connected_runs::none}; }

private:
    const runs* all = nullptr;
    std::uint32_t first = primitives::connected_runs::none;
    std::size_t count = 0;
    CPoint origin;
};

} // namespace vldv::spectra

/// A connected area of the mask. All points are in source coordinates, row 0 being the lowest.
struct Feature {
    CRect bounds; ///< right and bottom lie outside
    vldv::spectra::pixel_list pixels;
    std::vector<CPoint> contour;  ///< from the first pixel around and back to it
    std::vector<CPoint> skeleton; ///< row by row
    std::array<double, vldv::spectra::featureMetrics> metrics{};
};
