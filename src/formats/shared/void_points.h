#pragma once
#include "base/streams/element_range.h"
#include "formats/shared/sample_middle.h"
#include "formats/shared/void_ranges.h"
#include "vldv_api.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

// Samples that are no measurement: those that a file names so, NaN, infinite and absurd ones. In curves (images of one
// and three dimensions, along dimension 0) they come to lie on straight lines between their measured neighbours, at the
// ends at the value of the nearest, so that an analysis finds nothing in them; curves without any sample, and surfaces,
// get the lowest measured value.

namespace vldv::formats {

struct void_count {
    std::size_t all = 0, absurd = 0;
    bool areBridged = false;        ///< some lie between neighbours
    std::vector<void_range> ranges; ///< which
};

struct filled_samples {
    void_count voids;
    base::element_range range;          ///< of all samples then; not for 16-bit ones
    std::optional<middle_range> middle; ///< as of `narrow_middle`
    std::optional<middle_range> half;   ///< as of `half_of_samples`, where there is no narrow middle
};

/// Finds and fills them, \see settle_samples.
filled_samples fill_unmeasured(SPMDataStream& stream, std::span<const void_range> voids = {});
/// Fills 16-bit samples whose number is one of `markers`.
void_count fill_marked(SPMDataStream& stream, std::span<const std::int16_t> markers);

/// `convert_stream` to 16 bits of what was measured; samples without a type stay. \return which samples were
/// not, with those that `told` says, the text under `voidRangesKey` or null \throws std::bad_alloc
VLDV_INTERNAL_API std::vector<void_range> convert_measured(SPMDataStream& stream, const char* told = nullptr);

/// How many numbers are NaN, infinite or of absurd magnitude.
std::size_t count_implausible(const SPMDataStream& stream);

} // namespace vldv::formats
