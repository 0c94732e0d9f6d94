#include "surface/isoline.h"

namespace surface {

namespace {

constexpr int directions = 8;
/// From east towards north, rows counting upwards.
constexpr CSize steps[directions] = {{1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}, {-1, -1}, {0, -1}, {1, -1}};
constexpr int noWay = -1;

class height_set {
public:
    height_set(const sample_frame& frame_, CPoint seed) noexcept : frame(frame_), level(frame_.at(seed)) {}
    bool operator()(CPoint point) const noexcept { return frame.contains(point) && frame.at(point) >= level; }

    bool isInside(CPoint point) const noexcept
    {
        for (const CSize& step : steps)
            if (!(*this)(point + step)) return false;
        return true;
    }
    /// The first direction at or after `from` that leads back into the set when one turns out of it.
    int wayBackIn(CPoint point, int from) const noexcept
    {
        int turn = 0;
        while (turn < directions && (*this)(point + steps[(from + turn) % directions])) ++turn;
        const int outside = turn;
        while (turn < outside + directions && !(*this)(point + steps[(from + turn) % directions])) ++turn;
        return turn < outside + directions ? (from + turn) % directions : noWay;
    }

private:
    const sample_frame& frame;
    std::int16_t level;
};

} // namespace

namespace {

/// From `seed` in the first direction that turning from `from` gives, until it comes back; nothing when it does not. A
/// seed that touches what is lower by a corner alone is left for a line that passes beside it, again and again.
std::vector<CPoint> walk(const height_set& isSet, CPoint seed, int from)
{
    std::vector<CPoint> contour{seed};
    CPoint milestone = seed;
    int directionThere = noWay;
    std::size_t nextMilestone = 1;
    do {
        const int way = isSet.wayBackIn(contour.back(), from);
        if (way == noWay) return {};
        const CPoint next = contour.back() + steps[way];
        if (next == milestone && way == directionThere) return {};
        contour.push_back(next);
        from = (way + directions / 2) % directions;
        // Milestones twice as far apart each time: one of them lies on any ring.
        if (contour.size() != nextMilestone + 1) continue;
        nextMilestone *= 2;
        milestone = next;
        directionThere = way;
    } while (contour.back() != seed);
    return contour;
}

} // namespace

std::vector<CPoint> trace_isoline(const sample_frame& frame, CPoint seed)
{
    if (!frame.contains(seed)) return {};
    const height_set isSet(frame, seed);
    if (isSet.isInside(seed)) return {};
    for (int from = 0; from < directions; ++from)
        if (std::vector<CPoint> contour = walk(isSet, seed, from); !contour.empty()) return contour;
    return {};
}

} // namespace surface
