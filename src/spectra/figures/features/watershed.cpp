#include "spectra/figures/features/watershed.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>
#include <vector>

namespace vldv::spectra {

namespace {

using label = std::uint32_t;
constexpr label noLabel = 0, dividing = 1, firstBasin = 2;
constexpr int lowest = -32768, heightCount = 65536;

/// Samples in the mask, from the highest down; of equal heights in the order of the rows.
std::vector<std::uint32_t> falling_order(primitives::const_height_block heights, const primitives::bit_image& mask)
{
    const auto place_of = [&](int x, int y) { return static_cast<std::size_t>(32767 - heights.row(y)[x]); };
    std::vector<std::size_t> starts(heightCount + 1);
    for (int y = 0; y < mask.height(); ++y)
        for (int x = 0; x < mask.width(); ++x)
            if (mask.test(x, y)) ++starts[place_of(x, y) + 1];
    std::partial_sum(starts.begin(), starts.end(), starts.begin());
    std::vector<std::uint32_t> order(starts.back());
    for (int y = 0; y < mask.height(); ++y)
        for (int x = 0; x < mask.width(); ++x)
            if (mask.test(x, y))
                order[starts[place_of(x, y)]++] =
                    static_cast<std::uint32_t>(y) * static_cast<std::uint32_t>(mask.width()) +
                    static_cast<std::uint32_t>(x);
    return order;
}

/// Areas around summits, which become one where they meet too close below the lower summit.
class basins {
public:
    label add(int summit)
    {
        parents.push_back(static_cast<label>(parents.size()) + firstBasin);
        summits.push_back(summit);
        return parents.back();
    }
    label root(label of)
    {
        while (parent(of) != of) of = parent(of) = parent(parent(of));
        return of;
    }
    int summit(label root_) const { return summits[root_ - firstBasin]; }
    void join(label lower, label higher) { parent(lower) = higher; }

private:
    label& parent(label of) { return parents[of - firstBasin]; }
    std::vector<label> parents;
    std::vector<int> summits;
};

/// Different basins around a sample: a sample has eight neighbours.
class meeting_basins {
public:
    void add(label each)
    {
        if (std::find(found.begin(), found.begin() + count, each) == found.begin() + count) found[count++] = each;
    }
    std::ptrdiff_t size() const noexcept { return count; }
    label* begin() noexcept { return found.data(); }
    label* end() noexcept { return found.data() + count; }

private:
    std::array<label, 8> found{};
    std::ptrdiff_t count = 0;
};

class flooding {
public:
    flooding(primitives::const_height_block heights_, int depth_)
        : heights(heights_),
          depth(std::max(depth_, 1)),
          stride(heights_.width + 2),
          labels(static_cast<std::size_t>(stride) * static_cast<std::size_t>(heights_.height + 2), noLabel)
    {
    }
    /// Gives a sample to a basin, or leaves it between two.
    void add(int x, int y)
    {
        const int height = heights.row(y)[x];
        label* const here = labels.data() + place(x, y);
        meeting_basins met;
        bool isInValley = false;
        for (const int dy : {-stride, 0, stride})
            for (const int dx : {-1, 0, 1}) {
                const label each = here[dy + dx];
                if (each >= firstBasin) met.add(all.root(each));
                isInValley = isInValley || each == dividing;
            }
        if (met.size() == 0) {
            // What only samples between two basins surround is no summit: it goes to the first basin that it meets.
            *here = all.add(isInValley ? lowest : height);
            return;
        }
        label highest = *met.begin();
        for (const label each : met)
            if (all.summit(each) > all.summit(highest)) highest = each;
        bool isBetween = false;
        for (const label each : met) {
            if (each == highest) continue;
            if (all.summit(each) - height < depth)
                all.join(each, highest);
            else
                isBetween = true;
        }
        *here = isBetween ? dividing : highest;
    }
    bool divides(int x, int y) const { return labels[place(x, y)] == dividing; }

private:
    std::size_t place(int x, int y) const
    {
        return static_cast<std::size_t>(y + 1) * static_cast<std::size_t>(stride) + static_cast<std::size_t>(x + 1);
    }
    primitives::const_height_block heights;
    int depth, stride;
    std::vector<label> labels; ///< with a border of one
    basins all;
};

} // namespace

void part_by_watershed(primitives::const_height_block heights, primitives::bit_image& mask, int depth)
{
    flooding flood(heights, depth);
    const std::vector<std::uint32_t> order = falling_order(heights, mask);
    const auto width = static_cast<std::uint32_t>(mask.width());
    for (const std::uint32_t at : order) flood.add(static_cast<int>(at % width), static_cast<int>(at / width));
    for (const std::uint32_t at : order)
        if (const auto x = static_cast<int>(at % width), y = static_cast<int>(at / width); flood.divides(x, y))
            mask.fill(y, x, x + 1, false);
}

} // namespace vldv::spectra
