#pragma once
#include "primitives/fft/fft_tiles.h"
#include "primitives/fit/line_fit.h"
#include "primitives/fit/plane_moments.h"
#include "primitives/map/color_map.h"
#include "primitives/map/range.h"
#include "primitives/map/threshold.h"
#include "primitives/mask/thinning.h"
#include "primitives/resample/resample.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace vldv::primitives {

/// The kernels in their form for one instruction set. What each computes, and the plain form that it equals, stand with
/// the function of the library that calls it; rows are given by their first sample and their count.
struct kernel_table {
    const char* name; ///< of the instruction set

    height_range (*findRange)(const std::int16_t* heights, std::size_t count) noexcept;

    void (*thresholdRow)(const std::int16_t* heights, std::size_t count, std::int16_t threshold,
                         std::uint64_t* bits) noexcept;
    run_sums (*sumRun)(const std::int16_t* heights, std::size_t count) noexcept;

    void (*packBytes)(const std::uint8_t* bytes, int width, std::uint64_t* words, std::size_t stride) noexcept;
    void (*keepBytes)(const std::uint64_t* words, std::size_t stride, std::uint8_t* bytes, int width) noexcept;

    /// The window must be open.
    void (*mapHeights)(const std::int16_t* heights, std::size_t count, byte_window window, std::uint8_t* out) noexcept;
    void (*mapFloats)(const float* values, std::size_t count, byte_window window, std::uint8_t* out) noexcept;
    void (*paint32)(const std::uint8_t* bytes, std::size_t count, const color_lookup& colors,
                    std::uint8_t* out) noexcept;
    void (*paint24)(const std::uint8_t* bytes, std::size_t count, const color_lookup& colors,
                    std::uint8_t* out) noexcept;

    row_sums (*sumRow)(const std::int16_t* row, std::size_t count) noexcept;
    /// What is left of a row without the line, which is not empty; the rest as `flatten_row`.
    flattened_range (*takeLine)(const std::int16_t* row, std::size_t count, fitted_line line, float* out,
                                const void* soon) noexcept;
    /// Adds the powers of a row without the line offset + slope * column, for as many as fill sixteen lanes. Every set
    /// gives the same bits. \return how many that were
    std::size_t (*addPowers)(power_sums& total, const std::int16_t* row, std::size_t count, double offset,
                             double slope) noexcept;

    /// Sums of at most 65535 rows, column by column. \return the range of the rows
    height_range (*addRows)(const_height_block rows, std::int32_t* sums) noexcept;
    /// int(sum * share + shift) - 32768 for as many as fill whole registers. \return how many that were
    std::size_t (*writeMeans)(const std::int32_t* sums, std::size_t count, const double* share, const double* shift,
                              std::int16_t* out) noexcept;

    /// \return whether something was taken away
    bool (*thinningStep)(const thinning_step& step) noexcept;

    fft::tile_kernels<float> floatTransforms;
    fft::tile_kernels<double> doubleTransforms;
    template <class Number>
    const fft::tile_kernels<Number>& transforms() const noexcept
    {
        if constexpr (sizeof(Number) == sizeof(float))
            return floatTransforms;
        else
            return doubleTransforms;
    }
};

/// Of each instruction set that this processor has, the plain one first and the widest last.
std::span<const kernel_table> available_kernels() noexcept;

/// Of the widest instruction set of this processor.
inline const kernel_table& kernels() noexcept
{
    static const kernel_table& widest = available_kernels().back();
    return widest;
}

// Of one instruction set each; the others are only to be called where the processor has it.
kernel_table plain_kernels() noexcept;
kernel_table avx2_kernels() noexcept;
kernel_table avx512_kernels() noexcept;
kernel_table vbmi_kernels() noexcept;

} // namespace vldv::primitives
