#include "formats/shared/void_ranges.h"

#include "base/text.h"

#include <algorithm>

namespace vldv::formats {

namespace {

constexpr std::size_t mostTold = 100000; ///< about 1.5 MB of text

bool is_before(const void_range& a, const void_range& b) noexcept { return a.first < b.first; }

/// "192-399" \return a range without samples for another text
void_range range_of(std::string_view word)
{
    const std::size_t dash = word.find('-');
    if (dash == std::string_view::npos) return {};
    const auto first = base::whole_integer(word.substr(0, dash)), last = base::whole_integer(word.substr(dash + 1));
    if (!first || !last || *first < 0 || *last < *first) return {};
    return {static_cast<std::uint64_t>(*first), static_cast<std::uint64_t>(*last - *first) + 1};
}

/// Marks what lies in the curve. \return the mask stays empty while nothing does
void mark(std::vector<bool>& mask, std::size_t length, const curve_voids& voids)
{
    const auto endsBefore = [&](const void_range& each) { return each.first + each.count <= voids.begin; };
    auto range = std::ranges::partition_point(voids.ranges, endsBefore);
    for (; range != voids.ranges.end() && range->first < voids.begin + length; ++range) {
        mask.resize(length);
        const std::uint64_t from = std::max(range->first, voids.begin) - voids.begin;
        const std::uint64_t end = std::min<std::uint64_t>(range->first + range->count - voids.begin, length);
        std::fill(mask.begin() + static_cast<std::ptrdiff_t>(from), mask.begin() + static_cast<std::ptrdiff_t>(end),
                  true);
    }
}

} // namespace

std::vector<void_range> void_ranges(const SPMDataStream& stream, const char* told)
{
    std::vector<void_range> ranges;
    const std::string head = "of " + std::to_string(stream.array_length()) + ":";
    if (!told || !std::string_view(told).starts_with(head)) return ranges;
    for (const std::string_view word : base::split(base::trimmed(std::string_view(told).substr(head.size())), ' ')) {
        const void_range range = range_of(word);
        const std::uint64_t least = ranges.empty() ? 0 : ranges.back().first + ranges.back().count;
        if (range.count == 0 || range.first < least || range.first + range.count > stream.array_length()) return {};
        ranges.push_back(range);
    }
    return ranges;
}

std::string void_ranges_text(std::uint64_t samples, std::vector<void_range> ranges)
{
    if (ranges.empty()) return {};
    if (ranges.size() > mostTold) {
        const auto isLonger = [](const void_range& a, const void_range& b) {
            return a.count != b.count ? a.count > b.count : is_before(a, b);
        };
        std::ranges::sort(ranges, isLonger);
        ranges.resize(mostTold);
        std::ranges::sort(ranges, is_before);
    }
    std::string text = "of " + std::to_string(samples) + ":";
    for (const void_range& each : ranges)
        text += " " + std::to_string(each.first) + "-" + std::to_string(each.first + each.count - 1);
    return text;
}

measured_part measured_part_of(std::size_t length, std::initializer_list<curve_voids> streams)
{
    measured_part part{0, length, {}, 0};
    for (const curve_voids& each : streams) mark(part.gaps, length, each);
    if (part.gaps.empty()) return part;
    part.voids = static_cast<std::size_t>(std::ranges::count(part.gaps, true));
    while (part.end > 0 && part.gaps[part.end - 1]) --part.end;
    while (part.first < part.end && part.gaps[part.first]) ++part.first;
    part.gaps = {part.gaps.begin() + static_cast<std::ptrdiff_t>(part.first),
                 part.gaps.begin() + static_cast<std::ptrdiff_t>(part.end)};
    if (std::ranges::find(part.gaps, true) == part.gaps.end()) part.gaps.clear();
    return part;
}

std::vector<void_range> turned_ranges(std::span<const void_range> ranges, const std::vector<bool>& turned,
                                      std::span<const std::size_t> lengths, std::size_t points)
{
    std::vector<void_range> out;
    for (const void_range& each : ranges)
        for (std::uint64_t at = each.first; at < each.first + each.count;) {
            const std::uint64_t curve = at / points, begin = curve * points;
            if (curve >= lengths.size()) break; // samples that fill no curve
            const std::uint64_t end = std::min(each.first + each.count, begin + points);
            const std::uint64_t length = lengths[curve], last = std::min(end, begin + length);
            if (!turned[curve])
                out.push_back({at, end - at});
            else if (at < last)
                out.push_back({begin + (begin + length - last), last - at});
            at = end;
        }
    std::ranges::sort(out, is_before);
    return out;
}

} // namespace vldv::formats
