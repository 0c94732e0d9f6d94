#include "spectra/figures/shown_spectrum.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace vldv::spectra {

namespace {

unsigned threads() { return std::max(std::thread::hardware_concurrency(), 1u); }

} // namespace

void shown_spectrum::transform(std::span<const std::int16_t> samples, int width, int height)
{
    const spectrum_mode mode = shownMode;
    clear(); // before the new one needs memory
    spectrum = transform_frame(samples, width, height, threads());
    shownMode = mode;
}

void shown_spectrum::setMode(spectrum_mode mode)
{
    if (std::exchange(shownMode, mode) == mode) return;
    magnitudes.clear();
    firstMax.reset();
}

bool shown_spectrum::edit(std::span<const CRect> selection, selection_shape shape, spectrum_edit edit)
{
    if (!edit_spectrum(spectrum, selection, shape, edit)) return false;
    magnitudes.clear();
    return true;
}

shown_spectrum::restored_frame shown_spectrum::restored()
{
    restored_frame made{std::vector<std::int16_t>(spectrum.packed.size()), true};
    // The way back needs as much memory as the magnitudes, which are soon counted again.
    made.isExact = restore_frame(spectrum, made.samples, magnitudes, threads());
    magnitudes.clear();
    return made;
}

void shown_spectrum::needMagnitudes()
{
    if (!magnitudes.empty() || isEmpty()) return;
    magnitudes.resize(spectrum.packed.size());
    maxValue = spectrum_magnitudes(spectrum, shownMode, magnitudes);
    if (!firstMax) firstMax = maxValue;
}

void shown_spectrum::draw(const CRect& window, double contrast, bool normalizes, std::vector<std::int16_t>& out)
{
    needMagnitudes();
    out.resize(std::size_t(window.Width()) * std::size_t(window.Height()));
    const float brightest = normalizes ? maxValue : firstMax.value_or(maxValue);
    draw_spectrum(magnitudes, width(), height(), brightest, contrast, window, out);
}

float shown_spectrum::at(CPoint bin)
{
    const int x = bin.x + zero_frequency(width()), y = bin.y + zero_frequency(height());
    if (x < 0 || x >= width() || y < 0 || y >= height()) return 0.0f;
    needMagnitudes();
    const int column = bin.x < 0 ? bin.x + width() : bin.x % width();
    const int row = bin.y < 0 ? bin.y + height() : bin.y % height();
    return magnitudes[std::size_t(row) * std::size_t(width()) + std::size_t(column)];
}

float shown_spectrum::largest()
{
    needMagnitudes();
    return isEmpty() ? 1.0f : maxValue;
}

} // namespace vldv::spectra
