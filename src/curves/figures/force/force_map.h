#pragma once
#include "base/SPMDataStream.h"
#include "formats/shared/void_ranges.h"
#include "vldv_api.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace vldv::curves {

/// Force curves at the points of a grid, one behind the other.
struct force_volume {
    std::span<const std::int16_t> samples;
    int length = 0;    ///< of a curve, positive
    VLAxis position{}; ///< along a curve, or of `places`
    VLAxis values{};   ///< of the samples
    /// Samples of the parameter stream for as many curves, or for those of one of its sub-images; empty without one.
    std::span<const std::int16_t> places{};
    int placeLength = 0; ///< of a curve of `places`; 0: as many as a curve holds
    /// Measured samples of each curve; empty when all are whole.
    std::vector<std::size_t> lengths{};
    /// What was not measured among `samples` and among `places`, in rising order.
    std::vector<formats::void_range> voids{}, placeVoids{};

    std::size_t curves() const noexcept { return length > 0 ? samples.size() / static_cast<std::size_t>(length) : 0; }
    /// Measured samples of a curve.
    std::size_t lengthOf(std::size_t curve) const noexcept
    {
        return lengths.empty() ? static_cast<std::size_t>(length) : lengths[curve];
    }
    /// Where the samples of `places` for a curve begin.
    std::size_t placesOf(std::size_t curve) const noexcept
    {
        return places.empty() ? 0
                              : curve * static_cast<std::size_t>(placeLength ? placeLength : length) % places.size();
    }
    formats::measured_part partOf(std::size_t curve) const
    {
        return formats::measured_part_of(
            lengthOf(curve), {{voids, curve * static_cast<std::size_t>(length)}, {placeVoids, placesOf(curve)}});
    }
};

/// A number for each curve as a 16-bit sample. Points without the line that the number needs are not measured: they
/// take the median, which nothing takes for the stiffest or stickiest.
struct force_map {
    std::vector<std::int16_t> samples;
    VLAxis values; ///< of the samples
    std::size_t voids = 0;
    std::vector<formats::void_range> voidRanges{}; ///< which points these are, in rising order
};

struct force_maps {
    /// Slope of the contact against the zero line, a sample for a thousandth of its unit.
    force_map rigidity;
    /// Smallest value above the zero line, in steps of the samples.
    force_map adhesion;
    // A map that leaves 16 bits so, and a rigidity of which no sample reached 100, fills them on an axis of six digits.
};

struct map_options {
    unsigned threads = 0; ///< 0: as many as the machine has; the maps do not depend on it
    /// Told now and then how many curves are done, on the calling thread; may be empty.
    std::function<void(std::size_t done, std::size_t all)> progress{};
};

/// What the analysis with both thresholds 1 finds in each curve, over its parameter stream where there is one, as maps:
/// number for number what one curve after the other gives. \throws std::bad_alloc
VLDV_INTERNAL_API force_maps map_forces(const force_volume& volume, const map_options& options = {});

/// Sub-image `sub` of an image of force curves: dimension 0 runs along a curve, 1 and 2 over the grid. Positions are
/// those of the first axis of dimension 0; of the value axes the first with its units counts, else the first.
/// Samples must be 16-bit.
/// \param parameter  what the image is measured against, 16-bit and over its grid, or null; pairs end with the shorter
/// \param told, placesTold  the texts of their curve lengths, or null
/// \param voids, placeVoids  what of the streams was not measured, as `void_ranges` and `convert_measured` tell it
VLDV_INTERNAL_API force_volume volume_of(const SPMDataStream& stream, unsigned sub,
                                         const SPMDataStream* parameter = nullptr, const char* told = nullptr,
                                         const char* placesTold = nullptr,
                                         std::span<const formats::void_range> voids = {},
                                         std::span<const formats::void_range> placeVoids = {});
/// A map of such an image as an image of its own, over the axes of the grid.
VLDV_INTERNAL_API SPMDataStream map_stream(const SPMDataStream& source, const force_map& map, const char* name,
                                           const char* label);

} // namespace vldv::curves
