#pragma once
#include <cstdint>
#include <span>

namespace vldv::primitives {

/// One bit a height, 1 where it is strictly above the threshold; bits past the last are 0. `bits` has a word for every
/// 64 heights begun.
void threshold_row(std::span<const std::int16_t> heights, std::int16_t threshold, std::uint64_t* bits) noexcept;
/// The plain form that defines the answer.
void threshold_row_reference(std::span<const std::int16_t> heights, std::int16_t threshold,
                             std::uint64_t* bits) noexcept;

/// Sum, sum of squares and largest of a run of heights; exact.
struct run_sums {
    std::int64_t sum = 0, squares = 0;
    std::int16_t highest = -32768;
    bool operator==(const run_sums&) const = default;
    void add(const run_sums& other) noexcept
    {
        sum += other.sum;
        squares += other.squares;
        if (other.highest > highest) highest = other.highest;
    }
};
run_sums sum_run(std::span<const std::int16_t> heights) noexcept;
run_sums sum_run_reference(std::span<const std::int16_t> heights) noexcept;

} // namespace vldv::primitives
