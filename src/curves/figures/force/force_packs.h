#pragma once
#include "curves/figures/force/force_stretches.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// The search of `find_stretches` in several curves side by side, one a lane of a vector. Bit for bit what one curve by
/// itself gives.
namespace vldv::curves {

constexpr int packLanes = 8;
/// Shorter curves are not worth a pack, and longer ones not its memory.
constexpr int leastPacked = 8, mostPacked = 1 << 16;

struct pack_thresholds {
    double zero = 1.0, slant = 1.0;
};
/// Raw samples of one curve a lane and what they mean.
struct pack_source {
    const std::int16_t* curves[packLanes] = {};
    double scale = 1.0, start = 0.0;
};

/// Memory for one pack after the other.
class pack_work {
public:
    explicit pack_work(const curve_smoother& smoother_);
    pack_work(const pack_work&) = delete; // its pointers look into its block, which moves as a whole
    pack_work(pack_work&&) noexcept = default;

    const curve_smoother& smoother;
    double *steps, *shortPart, *coefficients; ///< packs, aligned to 64 bytes
    std::vector<std::uint64_t> steep, flat;   ///< words of the lanes in turn

    sample_bits steepOf(int lane) const noexcept { return {steep.data() + lane, smoother.samples(), packLanes}; }
    sample_bits flatOf(int lane) const noexcept { return {flat.data() + lane, smoother.samples(), packLanes}; }

private:
    std::vector<double> block;
};

/// What the kernels see of a pack.
struct pack_step {
    const pack_source& source;
    const pack_thresholds& thresholds;
    int samples, reach; ///< as those of the smoother
    primitives::uniform_spline::tables spline;
    double *steps, *shortPart, *coefficients;
    std::uint64_t *steep, *flat;
};
using pack_form = void (*)(const pack_step& step) noexcept;
/// The search for each instruction set that this processor has, the plain one first and the widest last.
std::span<const pack_form> available_pack_forms() noexcept;

/// Fills `steep` and `flat` of all lanes.
void mark_steps(const pack_source& source, const pack_thresholds& thresholds, pack_work& work,
                pack_form form = available_pack_forms().back()) noexcept;

// Of one instruction set each; the others are only to be called where the processor has it.
void mark_steps_plain(const pack_step& step) noexcept;
void mark_steps_avx2(const pack_step& step) noexcept;
void mark_steps_avx512(const pack_step& step) noexcept;

} // namespace vldv::curves
