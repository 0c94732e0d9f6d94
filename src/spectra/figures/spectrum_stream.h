#pragma once
#include "base/SPMDataStream.h"
#include "vldv_api.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vldv::spectra {

/// Pictures of spectra (`draw_spectrum`) of sub-images of a surface, as an image of its own: its dimensions are
/// frequencies, 0 where the zero frequency stands, in reciprocal units; its values go from 0 to 1.
/// \param subs  the numbers of the sub-images, in the order of the pictures
[[nodiscard]] VLDV_INTERNAL_API SPMDataStream make_spectrum_stream(const SPMDataStream& surface,
                                                                   std::span<const unsigned> subs,
                                                                   std::span<const std::vector<std::int16_t>> pictures);

} // namespace vldv::spectra
