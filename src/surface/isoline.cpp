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

std::vector<CPoint> trace_isoline(const sample_frame& frame, CPoint seed)
{
    if (!frame.contains(seed)) return {};
    const height_set isSet(frame, seed);
    if (isSet.isInside(seed)) return {};
    // Every sample is passed at most once from each side, so the walk comes back.
    std::vector<CPoint> contour{seed};
    int from = 0;
    do {
        const int way = isSet.wayBackIn(contour.back(), from);
        if (way == noWay) return {};
        contour.push_back(contour.back() + steps[way]);
        from = (way + directions / 2) % directions;
    } while (contour.back() != seed);
    return contour;
}

} // namespace surface
