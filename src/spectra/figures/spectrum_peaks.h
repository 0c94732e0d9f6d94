#pragma once
#include "spectra/figures/fourier.h"
#include "spectra/figures/wave.h"
#include "vldv_api.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace vldv::spectra {

/// A wave that stands out of a spectrum.
struct spectrum_peak {
    double u = 0.0, v = 0.0; ///< bins from the zero frequency, between bins; u > 0, or u = 0 and v > 0
    double magnitude = 0.0;  ///< |F| of the bin itself, raw units
    CPoint bin;              ///< the largest one
};

/// The strongest waves of a spectrum, each once of the two mirror images, the strongest first: bins that are larger
/// than their eight neighbours, at least 10 times the median of all and a tenth of the largest such bin. The lowest
/// frequencies, less than two bins from the zero frequency, are no waves of the picture.
///
/// Where a peak lies between the bins is told by the spectrum behind a Hann window, whose bins are
/// F(k) / 2 - (F(k - 1) + F(k + 1)) / 4 in each direction: of a single wave, the ratio r of the larger neighbour to the
/// bin itself gives the distance (2 r - 1) / (r + 1) (Grandke, IEEE Trans. Instrum. Meas. 32, 1983, 350).
/// \param count  at most that many
VLDV_INTERNAL_API std::vector<spectrum_peak> find_peaks(const frame_spectrum& spectrum, std::size_t count = 12);

/// A plane lattice.
struct lattice {
    double a, b;       ///< lengths of the two shortest steps, a <= b
    double angle;      ///< between them, degrees, 60 to 120 of most lattices
    double directionA; ///< of a, degrees from X, above -90 up to 90
    std::string units;
};

/// The lattice whose waves the peaks are: with two of the shortest, g = (g1, g2) as columns, cycles per unit, its steps
/// are the rows of the inverse of g, taken as short as they get by adding one to the other. Nine tenths of all peaks of at
/// least four periods, by their magnitudes, have to lie within three quarters of a bin of sums m g1 + n g2 with whole m
/// and n up to 3: else what stands out is no lattice.
/// \return nothing without such a pair, or where X and Y have units of different kinds
VLDV_INTERNAL_API std::optional<lattice> find_lattice(std::span<const spectrum_peak> peaks, const spectrum_grid& grid);

/// A table of the peaks, and the lattice below. \param heights  of the image
VLDV_INTERNAL_API std::string peaks_text(std::span<const spectrum_peak> peaks, const spectrum_grid& grid,
                                         const VLAxis& heights);

} // namespace vldv::spectra
