#include "surface/figures/measure/ridge_path.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace vldv::surface {

namespace {

constexpr int leastMargin = 16;             // samples
constexpr std::int64_t mostCells = 1 << 18; // searched in a hundredth of a second
constexpr int levels = 64, straightStep = 5, diagonalStep = 7;
constexpr int buckets = levels * diagonalStep + 1;
constexpr std::uint32_t unreached = ~0u;
constexpr std::array<CSize, 8> neighbours{{{1, 0}, {0, 1}, {-1, 0}, {0, -1}, {1, 1}, {-1, 1}, {-1, -1}, {1, -1}}};

CRect searched_box(const sample_frame& frame, CPoint from, CPoint to)
{
    CRect box(from, to);
    box.NormalizeRect();
    ++box.right;
    ++box.bottom;
    int margin = std::max(leastMargin, std::max(box.Width(), box.Height()) / 2);
    const auto cells = [&box](int around) {
        return (std::int64_t{box.Width()} + 2 * around) * (std::int64_t{box.Height()} + 2 * around);
    };
    while (margin > leastMargin && cells(margin) > mostCells) margin = std::max(leastMargin, margin / 2);
    box.InflateRect(margin, margin);
    CRect within;
    within.IntersectRect(box, CRect({0, 0}, frame.size()));
    return within;
}

/// Shortest ways from one cell, by buckets of equal cost: costs of a step are small integers.
class ridge_search {
public:
    ridge_search(const sample_frame& frame_, const CRect& box_) : frame(frame_), box(box_)
    {
        const auto count = static_cast<std::size_t>(box.Width()) * static_cast<std::size_t>(box.Height());
        costs.assign(count, unreached);
        cameFrom.resize(count);
        lowest = highest = frame.at({box.left, box.top});
        for (int y = box.top; y < box.bottom; ++y)
            for (int x = box.left; x < box.right; ++x) {
                lowest = std::min<int>(lowest, frame.at({x, y}));
                highest = std::max<int>(highest, frame.at({x, y}));
            }
    }

    std::vector<CPoint> path(CPoint from, CPoint to)
    {
        reach(from, 0, 0);
        for (std::uint32_t cost = 0; costs[index(to)] > cost; ++cost) {
            // Dial's form of Dijkstra's search. What waits costs at most one largest step more than what is looked at,
            // so that as many buckets as that step has units, used in turn, tell all costs apart. A cell that was
            // reached again for less still waits in its old bucket, where the comparison passes it over. The work grows
            // with the cells and needs no heap.
            std::vector<CPoint>& waiting = queue[cost % buckets];
            for (std::size_t i = 0; i < waiting.size(); ++i) // no step costs nothing, so the list does not grow
                if (costs[index(waiting[i])] == cost) spread(waiting[i], cost);
            waiting.clear();
        }
        std::vector<CPoint> way{to};
        while (way.back() != from) way.push_back(way.back() - neighbours[cameFrom[index(way.back())]]);
        std::ranges::reverse(way);
        return way;
    }

private:
    std::size_t index(CPoint at) const noexcept
    {
        return static_cast<std::size_t>(at.y - box.top) * static_cast<std::size_t>(box.Width()) +
               static_cast<std::size_t>(at.x - box.left);
    }
    std::uint32_t level(CPoint at) const noexcept
    {
        if (highest == lowest) return 1;
        // 1 for the highest sample of the box up to `levels` for the lowest: the cheapest way keeps to the ridges.
        // Steps of 5 and 7 stand for 1 and the root of 2.
        return 1u + static_cast<std::uint32_t>((highest - frame.at(at)) * (levels - 1) / (highest - lowest));
    }
    void reach(CPoint at, std::uint32_t cost, unsigned char direction)
    {
        if (cost >= costs[index(at)]) return;
        costs[index(at)] = cost;
        cameFrom[index(at)] = direction;
        queue[cost % buckets].push_back(at);
    }
    void spread(CPoint at, std::uint32_t cost)
    {
        for (unsigned char i = 0; i < neighbours.size(); ++i) {
            const CPoint next = at + neighbours[i];
            if (!box.PtInRect(next)) continue;
            reach(next, cost + level(next) * static_cast<std::uint32_t>(i < 4 ? straightStep : diagonalStep), i);
        }
    }

    const sample_frame& frame;
    CRect box;
    int lowest = 0, highest = 0;
    std::vector<std::uint32_t> costs;
    std::vector<unsigned char> cameFrom; ///< direction of the last step
    std::array<std::vector<CPoint>, buckets> queue;
};

/// The search between neighbouring corners of the straight line, so far apart as can be searched.
std::vector<CPoint> path_in_pieces(const sample_frame& frame, CPoint from, CPoint to)
{
    const CPoint middle{from.x + (to.x - from.x) / 2, from.y + (to.y - from.y) / 2};
    std::vector<CPoint> way = ridge_path(frame, from, middle);
    const std::vector<CPoint> rest = ridge_path(frame, middle, to);
    way.insert(way.end(), rest.begin() + 1, rest.end());
    return way;
}

double distance(CPoint at, CPoint from, CPoint to) noexcept
{
    const double dx = to.x - from.x, dy = to.y - from.y;
    const double squared = dx * dx + dy * dy;
    const double along = squared == 0.0 ? 0.0 : ((at.x - from.x) * dx + (at.y - from.y) * dy) / squared;
    const double t = std::clamp(along, 0.0, 1.0);
    return std::hypot(at.x - from.x - t * dx, at.y - from.y - t * dy);
}

} // namespace

std::vector<CPoint> ridge_path(const sample_frame& frame, CPoint from, CPoint to)
{
    if (!frame.contains(from) || !frame.contains(to)) return {};
    const CRect box = searched_box(frame, from, to);
    if (std::int64_t{box.Width()} * box.Height() > mostCells) return path_in_pieces(frame, from, to);
    return ridge_search(frame, box).path(from, to);
}

std::vector<CPoint> straight_path(CPoint from, CPoint to)
{
    const int dx = to.x - from.x, dy = to.y - from.y;
    const int count = std::max(std::abs(dx), std::abs(dy));
    std::vector<CPoint> path{from};
    const auto at = [count](int length, int i) {
        return static_cast<int>(std::lround(static_cast<double>(length) * i / count));
    };
    for (int i = 1; i <= count; ++i) path.push_back({from.x + at(dx, i), from.y + at(dy, i)});
    return path;
}

std::vector<CPoint> simplified(const std::vector<CPoint>& path, double radius)
{
    if (path.size() < 3 || !(radius > 0.0)) return path;
    // Douglas and Peucker: of a stretch between two kept points the farthest from their line is kept, too, while it
    // lies beyond the radius. The stretches wait in a list, so that long paths need no deep recursion.
    std::vector<bool> isKept(path.size());
    isKept.front() = isKept.back() = true;
    std::vector<std::pair<std::size_t, std::size_t>> stretches{{0, path.size() - 1}};
    while (!stretches.empty()) {
        const auto [first, last] = stretches.back();
        stretches.pop_back();
        std::size_t farthest = first;
        double most = radius;
        for (std::size_t i = first + 1; i < last; ++i) {
            const double away = distance(path[i], path[first], path[last]);
            if (away <= most) continue;
            most = away;
            farthest = i;
        }
        if (farthest == first) continue;
        isKept[farthest] = true;
        stretches.push_back({first, farthest});
        stretches.push_back({farthest, last});
    }
    std::vector<CPoint> corners;
    for (std::size_t i = 0; i < path.size(); ++i)
        if (isKept[i]) corners.push_back(path[i]);
    return corners;
}

} // namespace vldv::surface
