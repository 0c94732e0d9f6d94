#pragma once
#include "base/VLAxis.h"
#include "curves/figures/curve_spectrum.h"
#include "platform/draw/geometry.h"
#include "vldv_api.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vldv::curves {

/// The polylines of a spectrum in a pane of `size` pixels, its upper left corner at `origin`: values from 0 to their
/// maximum, phases from -pi to pi over the whole height.
/// \param samples  of the curve
VLDV_INTERNAL_API std::vector<CPoint> spectrum_points(const curve_spectrum& spectrum, std::uint32_t samples, CSize size,
                                                      CPoint origin);
VLDV_INTERNAL_API std::vector<CPoint> phase_points(const curve_spectrum& spectrum, std::uint32_t samples, CSize size,
                                                   CPoint origin);

/// A spectrum between two bins: bin 2.5 is the mean of the second and the third. Beyond the last bin it is that.
struct spectrum_place {
    double value = 0.0, phase = 0.0; ///< radians
};
VLDV_INTERNAL_API spectrum_place spectrum_at(const curve_spectrum& spectrum, double bin);

/// How the text of the spectrum's mark reads.
struct spectrum_text_style {
    bool isNormalized = true;   ///< values over the largest
    bool isPower = true;        ///< their unit is a square then
    std::optional<double> rate; ///< samples a second of a scan line, when frequencies are to be told
};
/// "X: 12 nm\tS: 0.5\tPhase: 90" at a bin: the wavelength, or the frequency, of its period; "(DC)" at bin 0.
/// \param samples  of the curve
VLDV_INTERNAL_API std::string spectrum_text(const curve_spectrum& spectrum, double bin, std::uint32_t samples,
                                            const VLAxis& positions, const VLAxis& values,
                                            const spectrum_text_style& style);

} // namespace vldv::curves
