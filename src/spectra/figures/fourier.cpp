#include "spectra/figures/fourier.h"

#include "primitives/fft/fft.h"

#include <algorithm>
#include <cassert>

namespace vldv::spectra {

namespace {

/// Calls `use(i, height of the plane)` for each sample.
template <class Use>
void along_plane(const frame_spectrum& spectrum, Use use)
{
    const primitives::fitted_plane& plane = spectrum.planeFit;
    std::size_t i = 0;
    for (int y = 0; y < spectrum.height; ++y) {
        const double start = plane.offset + plane.slopeY * y;
        for (int x = 0; x < spectrum.width; ++x, ++i) use(i, start + plane.slopeX * x);
    }
}

/// Halves up, kept within 16 bits; what is no number, after scaling beyond all measure, becomes the lowest. Cutting off
/// above 0 is the floor, and one that the machine has.
std::int16_t nearest_sample(double height)
{
    const double fromLowest = std::min(std::max(-32768.0, height), 32767.0) + 32768.5;
    return static_cast<std::int16_t>(static_cast<int>(fromLowest) - 32768);
}

} // namespace

frame_spectrum transform_frame(std::span<const std::int16_t> samples, int width, int height, unsigned threads)
{
    assert(width >= 0 && height >= 0 && samples.size() == std::size_t(width) * std::size_t(height));
    frame_spectrum spectrum{width, height, {}, {}};
    if (samples.empty()) return spectrum;
    // Without its best plane: the transform goes on with the first column behind the last, and a tilt would be a jump
    // there. The plane is kept and added again on the way back.
    spectrum.planeFit = primitives::fit_plane(samples, width).plane;
    spectrum.packed.resize(samples.size());
    along_plane(spectrum,
                [&](std::size_t i, double plane) { spectrum.packed[i] = static_cast<float>(samples[i] - plane); });
    primitives::forward_fft(spectrum.packed, width, height, threads);
    return spectrum;
}

void restore_frame(const frame_spectrum& spectrum, std::span<std::int16_t> samples, unsigned threads)
{
    std::vector<float> scratch;
    restore_frame(spectrum, samples, scratch, threads);
}

bool restore_frame(const frame_spectrum& spectrum, std::span<std::int16_t> samples, std::vector<float>& scratch,
                   unsigned threads)
{
    assert(samples.size() == spectrum.packed.size());
    scratch = spectrum.packed;
    primitives::inverse_fft(scratch, spectrum.width, spectrum.height, threads);
    double lowest = 0.0, highest = 0.0;
    along_plane(spectrum, [&](std::size_t i, double plane) {
        const double height = double(scratch[i]) + plane;
        samples[i] = nearest_sample(height);
        lowest = std::min(lowest, height);
        highest = std::max(highest, height);
    });
    return lowest >= -32768.5 && highest < 32767.5;
}

bool edit_spectrum(frame_spectrum& spectrum, std::span<const CRect> selection, selection_shape shape,
                   spectrum_edit edit)
{
    if (selection.empty()) return false;
    const auto width = static_cast<std::size_t>(spectrum.width);
    std::vector<std::uint8_t> mask(spectrum.packed.size());
    fill_selection_mask(selection, shape, spectrum.width, spectrum.height, mask.data(), width);
    const std::uint8_t edited = edit.outside ? 0 : 1;
    for (std::size_t i = 0; i < mask.size(); ++i)
        if (mask[i] == edited) spectrum.packed[i] *= edit.factor;
    return true;
}

} // namespace vldv::spectra
