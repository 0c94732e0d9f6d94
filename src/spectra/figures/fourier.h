#pragma once
#include "platform/draw/geometry.h"
#include "primitives/fit/plane_moments.h"
#include "spectra/figures/fourier_selection.h"
#include "vldv_api.h"

#include <cstdint>
#include <span>
#include <vector>

/// The spectrum of a frame: forward, edits, back.
namespace vldv::spectra {

/// The transform of a frame of W x H samples without its best plane.
struct frame_spectrum {
    int width = 0, height = 0;
    primitives::fitted_plane planeFit; ///< raw units, taken out before the transform
    /// W * H numbers in the form of primitives/fft.h, in raw units.
    std::vector<float> packed;
};

/// \param samples  rows of `width`; `width` times `height` of them
/// \param threads  at most that many work on it; the result does not depend on their number
[[nodiscard]] VLDV_INTERNAL_API frame_spectrum transform_frame(std::span<const std::int16_t> samples, int width,
                                                               int height, unsigned threads = 1);

/// Transforms back, adds the plane again, rounds halves up and keeps what lies beyond 16 bits at their ends.
/// \param samples  receives as many as the spectrum has numbers
VLDV_INTERNAL_API void restore_frame(const frame_spectrum& spectrum, std::span<std::int16_t> samples,
                                     unsigned threads = 1);
/// \param scratch  memory to work in, which is left with some numbers
/// \return nothing lay beyond 16 bits
bool restore_frame(const frame_spectrum& spectrum, std::span<std::int16_t> samples, std::vector<float>& scratch,
                   unsigned threads);

/// What an edit multiplies: the selected bins, or all others.
struct spectrum_edit {
    bool outside;
    float factor;
};
inline constexpr spectrum_edit zeroInner{false, 0.0f}, zeroOuter{true, 0.0f}, increase{false, 2.0f},
    decrease{false, 0.5f};

/// \param selection  stored parts, as `split_rect` leaves them
/// \return false, with nothing changed, when nothing is selected
VLDV_INTERNAL_API bool edit_spectrum(frame_spectrum& spectrum, std::span<const CRect> selection, selection_shape shape,
                                     spectrum_edit edit);

// The picture of a spectrum

enum class spectrum_mode { power, magnitude };

/// |F|, or its square, of every bin of the full spectrum: bin (c, r), 0 <= c < W, 0 <= r < H, at r * W + c.
/// \return the largest; 1 when all are 0
VLDV_INTERNAL_API float spectrum_magnitudes(const frame_spectrum& spectrum, spectrum_mode mode, std::span<float> out);

/// Where the zero frequency stands in a picture, in samples from its first.
constexpr int zero_frequency(int length) noexcept { return (length + 1) >> 1; }

/// The picture: 65535 (m / largest)^contrast - 32768, halves up, with the zero frequency at (`zero_frequency(width)`,
/// `zero_frequency(height)`).
VLDV_INTERNAL_API void draw_spectrum(std::span<const float> magnitudes, int width, int height, float largest,
                                     double contrast, std::span<std::int16_t> out);
/// A part of it. \param window  in samples of the picture, inside of it
void draw_spectrum(std::span<const float> magnitudes, int width, int height, float largest, double contrast,
                   const CRect& window, std::span<std::int16_t> out);

} // namespace vldv::spectra
