#pragma once
#include "primitives/map/range.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

/// Images in another size. `resample` itself, means and nearest samples, stands in numeric.h.
namespace vldv::primitives {

/// A block of samples; `step` bytes from row to row.
template <class Sample>
struct image_block {
    Sample* data = nullptr;
    int width = 0, height = 0, step = 0;
    Sample* row(int y) const noexcept
    {
        using byte = std::conditional_t<std::is_const_v<Sample>, const char, char>;
        return reinterpret_cast<Sample*>(reinterpret_cast<byte*>(data) + std::ptrdiff_t{y} * step);
    }
    /// `count` rows from `first` on.
    image_block rows(int first, int count) const noexcept { return {row(first), width, count, step}; }
};
using const_height_block = image_block<const std::int16_t>;
using height_block = image_block<std::int16_t>;

/// Smallest and largest of a block, empty for an empty one.
[[nodiscard]] height_range find_block_range(const_height_block block) noexcept;

/// As `resample`, which reads every sample of the source in any case. \return the range of the source, empty where
/// nothing is done \throws std::bad_alloc
height_range resample_and_range(const_height_block source, height_block target);

/// The plain form of `resample`, which defines its answer.
void resample_reference(const_height_block source, height_block target) noexcept;

/// How a resampled image is made of its samples.
enum class interpolation {
    nearest, ///< `resample`: nearest where it grows, means where it shrinks
    linear,
    cubic, ///< through the samples, with the slopes of their neighbours (Catmull-Rom)
};
/// The image in another size: target i lies at source (i + 1/2) N / n - 1/2. Where a direction shrinks, the kernel is
/// as many times wider, so that nothing finer than the new samples shows up as a false pattern. Samples beyond the edge
/// repeat the last; results are rounded, halves up, and kept within 16 bits. \throws std::bad_alloc
void resample_smooth(const_height_block source, height_block target, interpolation kind);

} // namespace vldv::primitives
