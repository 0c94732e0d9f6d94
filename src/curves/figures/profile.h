#pragma once
#include "base/SPMDataStream.h"
#include "vldv_api.h"

#include <cstdint>
#include <set>
#include <span>
#include <vector>

namespace vldv::curves {

/// A sample of a stream: one index a dimension, in the stream's order.
using grid_point = std::vector<std::int32_t>;

/// What is needed to read the samples of a stream; all else follows from it.
struct grid {
    std::vector<std::int64_t> lengths; ///< of the dimensions
    std::int64_t subLength = 0;        ///< samples of a sub-image
    unsigned subImages = 0;

    explicit grid(const SPMDataStream& stream);
    bool isEmpty() const noexcept { return subImages == 0; }
    std::size_t dimensions() const noexcept { return lengths.size(); }
};

/// The curves along a line through an image, one a sub-image. Of a whole record of 16-bit numbers they are the image's
/// own samples, which must stay where they are; of anything else they stand in memory of their own.
struct VLDV_INTERNAL_API profile {
    profile() = default;
    profile(profile&&) = default;
    profile& operator=(profile&&) = default;

    std::vector<std::uint32_t> segmentLengths; ///< samples from each point to the next, both included
    std::set<std::int32_t> varyingDimensions;  ///< those along which the line runs
    std::uint32_t length = 0;                  ///< samples of one curve; a joint of two segments counts once
    std::span<const std::int16_t> samples;     ///< curve behind curve
    std::vector<std::int16_t> memory;          ///< of those that are not the image's; may be larger
    unsigned curves = 0;
    /// Samples that each curve holds, the rest of it being padding; empty when all are whole.
    std::vector<std::uint32_t> lengths;
    /// Which samples were not measured, or lie behind the ends of curves that the line crosses, curve by curve; empty
    /// without any.
    std::vector<bool> gaps;
    /// Meaning of the samples: of the image, or of its conversion to 16 bits.
    VLAxesContainer values;

    bool isEmpty() const noexcept { return curves == 0; }
    std::uint32_t lengthOf(unsigned index) const noexcept { return lengths.empty() ? length : lengths[index]; }
    /// Without padding; empty for a curve that was not measured.
    std::span<const std::int16_t> curve(unsigned index) const noexcept
    {
        return {samples.data() + std::size_t{index} * length, lengthOf(index)};
    }
    bool isMeasured(unsigned index, std::size_t at) const
    {
        return gaps.empty() || !gaps[std::size_t{index} * length + at];
    }
    /// Which samples of a curve were not measured, one entry for each; empty when all were.
    std::vector<bool> gapsOf(unsigned index) const;
    /// All curves with their padding.
    std::span<const std::int16_t> all() const noexcept { return samples; }
    /// The dimension whose axes give the positions.
    unsigned dimension() const noexcept
    {
        return varyingDimensions.empty() ? 0 : static_cast<unsigned>(*varyingDimensions.begin());
    }
};

/// Takes the curves along the line through `points` into `out`, whose memory is used again; empty for an image without
/// samples, and for fewer than two points. Points are brought into the image; a one-dimensional image with fewer than
/// 3 of them is taken from its first sample to its last, and `points` says so afterwards. The nearest sample counts,
/// nothing is interpolated.
/// \param halfWidth  in images of two dimensions each sample is the mean of so many on either side, across the line,
/// and of itself; beyond the edge the last sample repeats, and samples that were not measured do not count
/// \param told  the image's text of curve lengths, or null: a line along one curve ends where that does, what lies
/// behind the ends of others is a gap
/// \param toldVoids  the image's text of samples that were not measured, or null
/// \throws std::bad_alloc; std::length_error when a curve exceeds 31 bits of samples or all exceed 32
VLDV_INTERNAL_API void take_profile(const SPMDataStream& stream, std::vector<grid_point>& points, unsigned halfWidth,
                                    profile& out, const char* told = nullptr, const char* toldVoids = nullptr);
/// The curves may be those of the stream, which must not go at once.
void take_profile(SPMDataStream&&, std::vector<grid_point>&, unsigned, profile&, const char* = nullptr,
                  const char* = nullptr) = delete;

/// The sample of the image under a sample of the curve, between the ends of its segment.
grid_point point_of_sample(std::span<const grid_point> points, std::span<const std::uint32_t> segmentLengths,
                           std::int64_t sample);

} // namespace vldv::curves
