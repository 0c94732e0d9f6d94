#include "primitives/mask/connected_runs.h"

#include <bit>

namespace vldv::primitives {

namespace {

/// Writes where the bits of a row change, first and one past the last of each run. \return how many there are
std::size_t find_edges(const std::uint64_t* bits, int width, std::int32_t* edges) noexcept
{
    std::int32_t* next = edges;
    std::uint64_t before = 0;
    for (int first = 0; first < width; first += bitsOfWord) {
        const std::uint64_t word = *bits++;
        // A bit of `changes` is set where a sample differs from the one to its left, the last of the word before
        // included: the ends of runs are found at the cost of one step each, however long the runs are.
        for (std::uint64_t changes = word ^ (word << 1 | before); changes != 0; changes &= changes - 1)
            *next++ = first + std::countr_zero(changes);
        before = word >> (bitsOfWord - 1);
    }
    // A run that ends with the last word has no clear bit behind it.
    if (before != 0) *next++ = width;
    return static_cast<std::size_t>(next - edges);
}

void add(connected_runs::area& area, const connected_runs::area& other) noexcept
{
    area.left = std::min(area.left, other.left);
    area.right = std::max(area.right, other.right);
    area.top = std::min(area.top, other.top);
    area.bottom = std::max(area.bottom, other.bottom);
    area.pixels += other.pixels;
    area.heights.add(other.heights);
}

} // namespace

void connected_runs::find(const bit_image& mask, const_height_block heights, neighbours connected)
{
    begin(mask.width());
    gap = connected == neighbours::overSides ? 1 : 0;
    for (int y = 0; y < mask.height(); ++y) addRow(y, mask.row(y), heights.data ? heights.row(y) : nullptr);
    finish();
}

void connected_runs::findAbove(const_height_block heights, std::int16_t threshold, bit_image& mask)
{
    mask.assign(heights.width, heights.height);
    begin(mask.width());
    for (int y = 0; y < mask.height(); ++y) {
        threshold_row({heights.row(y), static_cast<std::size_t>(heights.width)}, threshold, mask.row(y));
        addRow(y, mask.row(y), heights.row(y));
    }
    finish();
}

void connected_runs::begin(int width)
{
    all.clear();
    found.clear();
    parents.clear();
    edges.resize(static_cast<std::size_t>(width) + 1);
    rowAbove = 0;
    gap = 0;
}

void connected_runs::addRow(int y, const std::uint64_t* bits, const std::int16_t* heights)
{
    const std::size_t count = find_edges(bits, static_cast<int>(edges.size()) - 1, edges.data());
    const std::size_t thisRow = all.size();
    std::size_t above = rowAbove;
    for (std::size_t i = 0; i < count; i += 2) {
        const std::int32_t left = edges[i], right = edges[i + 1];
        // Runs ascend in both rows, so that `above` never goes back: it passes those that end too far left for this run
        // and thus for all that follow. Those that touch it are kept, as they may touch the next one as well.
        while (above < thisRow && all[above].right < left + gap) ++above;
        std::uint32_t label = none;
        for (std::size_t k = above; k < thisRow && all[k].left <= right - gap; ++k) {
            const std::uint32_t touched = rootOf(all[k].next);
            label = label == none ? touched : unite(label, touched);
        }
        area piece{left, y, right, y + 1, none, right - left, {}};
        if (heights) piece.heights = sum_run({heights + left, static_cast<std::size_t>(right - left)});
        if (label == none) {
            label = static_cast<std::uint32_t>(found.size());
            found.push_back(piece);
            parents.push_back(label);
        } else {
            add(found[label], piece);
        }
        all.push_back({y, left, right, label});
    }
    rowAbove = thisRow;
}

std::uint32_t connected_runs::rootOf(std::uint32_t label) noexcept
{
    while (parents[label] != label) {
        // Halving the path on each walk keeps the chains of labels so short that finding a root costs next to nothing
        // on average.
        parents[label] = parents[parents[label]];
        label = parents[label];
    }
    return label;
}

/// The older label stays, so that an area keeps the number of the place where it was met first.
std::uint32_t connected_runs::unite(std::uint32_t a, std::uint32_t b) noexcept
{
    if (a == b) return a;
    if (b < a) std::swap(a, b);
    parents[b] = a;
    add(found[a], found[b]);
    return a;
}

/// Numbers the areas that are left and chains their runs.
void connected_runs::finish() noexcept
{
    std::uint32_t count = 0;
    for (std::size_t label = 0; label < parents.size(); ++label) {
        if (parents[label] != label) {
            parents[label] = parents[parents[label]]; // older, so it has its new number already
            continue;
        }
        found[count] = found[label];
        parents[label] = count++;
    }
    found.shrink(count);
    // Backwards, each run put in front of its area's chain: the chains come out in the order of the rows.
    for (std::size_t i = all.size(); i-- > 0;) {
        area& owner = found[parents[all[i].next]];
        all[i].next = owner.firstRun;
        owner.firstRun = static_cast<std::uint32_t>(i);
    }
}

} // namespace vldv::primitives
