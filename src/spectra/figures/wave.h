#pragma once
#include "base/VLAxis.h"
#include "platform/draw/geometry.h"
#include "vldv_api.h"

#include <optional>
#include <string>

namespace vldv::spectra {

/// The grid of an image whose spectrum is looked at.
struct spectrum_grid {
    int width = 0, height = 0; ///< samples
    VLAxis x, y;
};

/// What a place of a spectrum stands for.
struct VLDV_INTERNAL_API wave {
    double fx = 0.0, fy = 0.0; ///< cycles per unit of X and of Y; per unit of X both where the units agree
    std::string unitX, unitY;  ///< of the lengths, equal where the units agree

    bool hasLength() const noexcept { return unitX == unitY; }
    /// Cycles per unit; only where `hasLength`.
    double frequency() const noexcept;
    /// Degrees from X towards Y of the way across the crests, above -90 up to 90: a wave has no more than that.
    double direction() const noexcept;
};

/// \param u, v  bins from the zero frequency, fractions allowed. Bin u is u / (width * step) cycles per unit.
VLDV_INTERNAL_API wave wave_at(const spectrum_grid& grid, double u, double v);

/// "T: 3.14 nm  F: 0.318471 1/nm  A: 45.00", in the unit in which the period reads well; at the zero frequency its
/// name alone; "Fx: … Fy: …" where X and Y have units of different kinds.
VLDV_INTERNAL_API std::string wave_text(const wave& at);

} // namespace vldv::spectra
