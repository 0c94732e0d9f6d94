#pragma once
#include <bit>
#include <cstdint>

namespace primitives {

/// A way from a sample to one of its eight neighbours.
struct boundary_step {
    int x, y;
};
/// From east towards north, rows counting upwards.
inline constexpr boundary_step boundary_steps[8] = {{1, 0},  {1, 1},   {0, 1},  {-1, 1},
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

/// Walks around a set from a sample at its border that has a neighbour, with the outside on the right hand as rows
/// count upwards, until it comes back there. `visit` gets each sample, the start at the beginning and at the end.
/// \param neighboursOf  bits of the neighbours of (x, y) that are in the set, as above
/// The start must touch the outside in a direction that the walk from east meets before it turns back into the set: the
/// first sample of an area along the rows does.
template <class NeighboursOf, class Visit>
void trace_boundary(int startX, int startY, NeighboursOf neighboursOf, Visit visit)
{
    int x = startX, y = startY, from = 0;
    visit(x, y);
    do {
        const int way = way_back_in(neighboursOf(x, y), from);
        x += boundary_steps[way].x;
        y += boundary_steps[way].y;
        visit(x, y);
        from = (way + 4) & 7;
    } while (x != startX || y != startY);
}

} // namespace primitives
