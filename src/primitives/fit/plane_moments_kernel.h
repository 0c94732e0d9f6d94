// Included by the sources of the kernels alone; see simd/vector.h.
#pragma once
#include "primitives/fit/plane_moments.h"
#include "primitives/simd/vector.h"

// Powers are summed in sixteen lanes: sample i of a row goes to lane i mod 16, and at the end lane k + 8 is added to
// lane k, then all from lane 0 on. Every instruction set does the same operations in the same order, so that figures do
// not depend on the machine.

namespace vldv::primitives::simd {
namespace {

constexpr int powerLanes = 16;

struct lane_powers {
    double second[powerLanes], third[powerLanes], fourth[powerLanes], absolute[powerLanes];
    static double totalOf(const double* sums)
    {
        double total = 0.0;
        for (int k = 0; k < powerLanes / 2; ++k) total += sums[k] + sums[k + powerLanes / 2];
        return total;
    }
    void addTo(power_sums& total) const
    {
        total.second += totalOf(second);
        total.third += totalOf(third);
        total.fourth += totalOf(fourth);
        total.absolute += totalOf(absolute);
    }
};

inline vec<double> magnitude(vec<double> v) { return as<double>(as<std::uint64_t>(v) & ~(std::uint64_t{1} << 63)); }

std::size_t add_powers(power_sums& total, const std::int16_t* row, std::size_t count, double offset,
                       double slope) noexcept
{
    // Two registers of each sum at a time: there are not enough for more, and the row is in the nearest cache.
    constexpr int blocks = 2, part = blocks * wide<double>;
    const std::size_t whole = count / powerLanes * powerLanes;
    lane_powers sums;
    for (int first = 0; first < powerLanes; first += part) {
        vec<double> line[blocks], second[blocks] = {}, third[blocks] = {}, fourth[blocks] = {}, absolute[blocks] = {};
        for (int b = 0; b < blocks; ++b) line[b] = offset + slope * (counted() + (first + b * wide<double>));
        for (std::size_t i = 0; i < whole; i += powerLanes)
#pragma GCC unroll 2
            for (int b = 0; b < blocks; ++b) {
                const auto z = load_doubles(row + i + first + b * wide<double>) - line[b], square = z * z;
                second[b] += square;
                third[b] += square * z;
                fourth[b] += square * square;
                absolute[b] += magnitude(z);
                line[b] += slope * powerLanes;
            }
        for (int b = 0; b < blocks; ++b) {
            const int lane = first + b * wide<double>;
            store(sums.second + lane, second[b]);
            store(sums.third + lane, third[b]);
            store(sums.fourth + lane, fourth[b]);
            store(sums.absolute + lane, absolute[b]);
        }
    }
    sums.addTo(total);
    return whole;
}

} // namespace
} // namespace vldv::primitives::simd
