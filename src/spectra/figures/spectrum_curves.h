#pragma once
#include "base/SPMDataStream.h"
#include "spectra/figures/shown_spectrum.h"
#include "spectra/figures/wave.h"
#include "vldv_api.h"

#include <optional>

namespace vldv::spectra {

/// What a spectrum shows, over frequency. Values are magnitudes in the unit of the heights, or powers in its square.
struct spectrum_curve_source {
    shown_spectrum& spectrum;
    spectrum_grid grid;
    VLAxis heights;
    spectrum_mode mode;
};

/// The mean over all bins whose frequency, counted in the smaller step of both axes, rounds to the same number, from 0
/// as far as the ring lies in the spectrum. \return nothing where X and Y have units of different kinds
VLDV_INTERNAL_API std::optional<SPMDataStream> radial_spectrum(const spectrum_curve_source& source);

/// Along the line through the zero frequency and a bin, in steps of one bin along the longer of its two ways, between
/// bins by the four around. \param through  not the zero frequency
/// \return nothing where the line has no length in one unit
VLDV_INTERNAL_API std::optional<SPMDataStream> origin_profile(const spectrum_curve_source& source, CPoint through);

} // namespace vldv::spectra
