#pragma once
#include <bit>
#include <cstdint>

namespace vldv::primitives {

/// A way from a sample to one of its eight neighbours.
struct boundary_step {
    int x, y;
};
/// From east towards north, rows counting upwards.
inline constexpr boundary_step boundarySteps[8] = {{1, 0},  {1, 1},   {0, 1},  {-1, 1},
                                                   {-1, 0}, {-1, -1}, {0, -1}, {1, -1}};

/// The first direction at or after `from` that leads back into a set when one turns out of it.
/// \param neighbours  which are in the set, bit k for direction k; some are and some are not
constexpr int way_back_in(unsigned neighbours, int from) noexcept
{
    const auto turned = std::rotr(static_cast<std::uint8_t>(neighbours), from);
    const int outside = std::countr_one(turned);
    const auto rest = std::rotr(turned, outside);
    return (from + outside + std::countr_zero(rest)) & 7;
}

/// Walks all around a connected set, its outside on the right hand as rows count upwards, from the sample that a scan
/// along the rows meets first: what lies to its west and below it is outside, so that the walk never turns into a hole.
/// It ends where the start is about to be left in its first direction again (Jacob's criterion), so that parts which
/// hang together in the start alone are all walked around, and a line is walked along on both its sides.
/// `visit` gets each sample, the start at the beginning, at the end and whenever the walk comes by.
/// \param neighboursOf  bits of the neighbours of (x, y) that are in the set, bit k for direction k
template <class NeighboursOf, class Visit>
void walk_outline(int startX, int startY, NeighboursOf neighboursOf, Visit visit)
{
    visit(startX, startY);
    constexpr int west = 4;
    const unsigned around = neighboursOf(startX, startY);
    if (around == 0) return;
    const int first = way_back_in(around, west);
    int x = startX, y = startY, way = first;
    do {
        x += boundarySteps[way].x;
        y += boundarySteps[way].y;
        visit(x, y);
        way = way_back_in(neighboursOf(x, y), (way + 4) & 7);
    } while (x != startX || y != startY || way != first);
}

/// Walks around a set from a sample at its border that has a neighbour in it, with the outside on the right hand as
/// rows count upwards, until it comes back there. `visit` gets each sample, the start at the beginning and at the end.
/// \param from  the walk leaves in the first direction that turning from this one leads back into the set
/// \param neighboursOf  bits of the neighbours of (x, y) that are in the set, bit k for direction k
/// \return false when the walk never comes back: where the start touches the outside by a corner alone, a line passes
/// beside it, again and again
template <class NeighboursOf, class Visit>
bool walk_boundary(int startX, int startY, int from, NeighboursOf neighboursOf, Visit visit)
{
    int x = startX, y = startY, way = -1;
    int milestoneX = x, milestoneY = y, milestoneWay = way;
    visit(x, y);
    for (std::uint64_t length = 1, nextMilestone = 1;; ++length) {
        way = way_back_in(neighboursOf(x, y), from);
        x += boundarySteps[way].x;
        y += boundarySteps[way].y;
        if (x == milestoneX && y == milestoneY && way == milestoneWay) return false;
        visit(x, y);
        if (x == startX && y == startY) return true;
        from = (way + 4) & 7;
        // Milestones twice as far apart each time: one of them lies on any ring.
        if (length != nextMilestone) continue;
        nextMilestone *= 2;
        milestoneX = x;
        milestoneY = y;
        milestoneWay = way;
    }
}

/// The walk from the first direction, east first, from which it comes back. A start that touches the outside by corners
/// alone, which every walk passes by, gives way to the sample that the first step leads to. `restart` is called before
/// each attempt.
/// \return whether there is one; without neighbours, or with all eight, there is none
template <class NeighboursOf, class Restart, class Visit>
bool trace_boundary(int startX, int startY, NeighboursOf neighboursOf, Restart restart, Visit visit)
{
    const unsigned around = neighboursOf(startX, startY);
    restart();
    if (around == 0 || around == 0xFF) return false;
    for (int from = 0; from < 8; ++from) {
        restart();
        if (walk_boundary(startX, startY, from, neighboursOf, visit)) return true;
    }
    restart();
    const int way = way_back_in(around, 0);
    return walk_boundary(startX + boundarySteps[way].x, startY + boundarySteps[way].y, (way + 4) & 7, neighboursOf,
                         visit);
}

} // namespace vldv::primitives
