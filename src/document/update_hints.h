#pragma once
#include <cstdint>

/// What `UpdateAllViews` carries: the code in the low byte, a reload flag in the next, the image index above.
namespace document {

/// Low byte of a hint: what happened.
enum hint_code : std::uint32_t {
    hintNewData = 0,
    hintNewSize = 1,
    hintDataChanged = 2,
    hintAxesChanged = 3,
    hintScaleChanged = 4,
    hintBringToFront = 5,
    hintRedraw = 6,
    hintChangeSubimage = 8,
    hintSectionChanged = 9, ///< the object is the section's view
    hintClearMarks = 10,
    hintAddMark = 11,  ///< the object is its point, samples
    hintShowText = 12, ///< the object is a measurement
};
/// In the second byte: views reload.
constexpr std::uint32_t hintReloads = 0x100;

/// The shape of the image changed: views rebuild their geometry.
constexpr std::uint32_t shape_hint(unsigned image) noexcept { return image << 16 | 1u; }
/// The data of the image changed: views reload and redraw.
constexpr std::uint32_t data_hint(unsigned image) noexcept { return image << 16 | 258u; }
/// What is drawn over the image changed: views redraw.
constexpr std::uint32_t drawing_hint(unsigned image) noexcept { return image << 16 | 2u; }
/// An axis changed. `dimension` is `unsigned(-1)` for a value axis; each part has 8 bits.
constexpr std::uint32_t axis_hint(unsigned dimension, unsigned image, unsigned axis) noexcept
{
    return dimension << 24 | (image & 0xffu) << 16 | (axis & 0xffu) << 8 | 3u;
}

} // namespace document
