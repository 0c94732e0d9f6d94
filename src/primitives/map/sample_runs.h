#pragma once
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace vldv::primitives {

/// Samples that lie one behind another.
struct sample_run {
    std::size_t first = 0, count = 0;
    bool operator==(const sample_run&) const = default;
};

/// Calls `use(first, count)` for each stretch of the samples from `first` to `end` that lies between the runs.
/// \param leftOut  in rising order
template <class Use>
void for_each_kept(std::size_t first, std::size_t end, std::span<const sample_run> leftOut, Use use)
{
    const auto endsBefore = [first](const sample_run& each) { return each.first + each.count <= first; };
    for (auto run = std::ranges::partition_point(leftOut, endsBefore); run != leftOut.end() && run->first < end;
         ++run) {
        if (run->first > first) use(first, run->first - first);
        first = std::min(run->first + run->count, end);
    }
    if (first < end) use(first, end - first);
}

/// The runs as far as they lie among the samples from `first` to `end`. \param runs  in rising order
[[nodiscard]] inline std::vector<sample_run> runs_within(std::size_t first, std::size_t end,
                                                         std::span<const sample_run> runs)
{
    const auto endsBefore = [first](const sample_run& each) { return each.first + each.count <= first; };
    std::vector<sample_run> inside;
    for (auto each = std::ranges::partition_point(runs, endsBefore); each != runs.end() && each->first < end; ++each) {
        const std::size_t from = std::max(each->first, first);
        inside.push_back({from, std::min(each->first + each->count, end) - from});
    }
    return inside;
}

/// The runs in rising order with those that touch as one.
[[nodiscard]] inline std::vector<sample_run> joined_runs(std::vector<sample_run> runs)
{
    std::size_t kept = 0;
    for (const sample_run& each : runs)
        if (kept != 0 && runs[kept - 1].first + runs[kept - 1].count == each.first)
            runs[kept - 1].count += each.count;
        else
            runs[kept++] = each;
    runs.resize(kept);
    return runs;
}

/// How many samples the runs hold.
[[nodiscard]] inline std::size_t count_of(std::span<const sample_run> runs) noexcept
{
    std::size_t count = 0;
    for (const sample_run& each : runs) count += each.count;
    return count;
}

} // namespace vldv::primitives
