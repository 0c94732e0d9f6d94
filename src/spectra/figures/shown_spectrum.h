#pragma once
#include "spectra/figures/fourier.h"
#include "vldv_api.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace vldv::spectra {

/// The spectrum of a frame as a window keeps it: edited again and again, shown in parts, led back. Places in it are
/// samples of the picture, in which the zero frequency stands at (`zero_frequency(width)`, `zero_frequency(height)`).
class VLDV_INTERNAL_API shown_spectrum {
public:
    void transform(std::span<const std::int16_t> samples, int width, int height);
    /// Gives the memory back.
    void clear() noexcept { *this = {}; }
    bool isEmpty() const noexcept { return spectrum.packed.empty(); }
    int width() const noexcept { return spectrum.width; }
    int height() const noexcept { return spectrum.height; }
    void setMode(spectrum_mode mode);
    const frame_spectrum& frame() const noexcept { return spectrum; }

    /// \param selection  stored parts, as `split_rect` leaves them \return false, with nothing changed, when empty
    bool edit(std::span<const CRect> selection, selection_shape shape, spectrum_edit edit);

    /// The samples of the spectrum of now.
    struct restored_frame {
        std::vector<std::int16_t> samples;
        bool isExact; ///< none lay beyond 16 bits
    };
    restored_frame restored();

    /// A part of the picture (`draw_spectrum`), row by row. \param window  inside of it, samples
    /// \param normalizes  the largest bin of now is the brightest; else that of the spectrum as it was transformed, so
    /// that edits leave all other bins as bright as they were
    void draw(const CRect& window, double contrast, bool normalizes, std::vector<std::int16_t>& out);
    /// |F| or |F|^2 of a bin in centred coordinates, raw units; 0 beyond the spectrum.
    float at(CPoint bin);
    /// Of all bins; 1 when all are 0.
    float largest();

private:
    void needMagnitudes();

    frame_spectrum spectrum;
    std::vector<float> magnitudes; ///< of the full spectrum; none until they are needed
    float maxValue = 1.0f;
    std::optional<float> firstMax; ///< of the spectrum as it was transformed
    spectrum_mode shownMode = spectrum_mode::power;
};

} // namespace vldv::spectra
