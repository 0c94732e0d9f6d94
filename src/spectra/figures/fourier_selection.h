#pragma once
#include "platform/draw/geometry.h"
#include "vldv_api.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// Areas of a spectrum in centred frequency coordinates: x and y count bins from the zero frequency, up to half the
/// width and height on both sides. Sides of rectangles are inclusive here: (1, 1, 1, 1) is one bin.
namespace vldv::spectra {

enum class selection_shape { rectangular, elliptic };

/// All four sides negated; the corners come out crossed.
CRect mirror_rect(const CRect& rect) noexcept;

/// The bin, or its mirror image, that stands in columns x >= 0, with its row in 0 … height - 1.
CPoint normalize_point(CPoint point, int height) noexcept;

/// Adds the parts of a rectangle, corners in any order, to the list. What lies left of 0 is mirrored through the
/// origin, and no part crosses the row 0: each has left >= 0, and either bottom < 0 or top >= 0.
VLDV_INTERNAL_API void split_rect(CRect rect, std::vector<CRect>& list);

/// Sets the bytes of all numbers of the packed spectrum (primitives/fft.h) that belong to selected bins or to their
/// mirror images to 1, the others to 0. Bins beyond the spectrum do not count. An ellipse fills its stored part.
/// \param list    stored parts, as `split_rect` leaves them
/// \param mask    `height` rows of `width` bytes
/// \param stride  bytes from row to row
void fill_selection_mask(std::span<const CRect> list, selection_shape shape, int width, int height, std::uint8_t* mask,
                         std::size_t stride);

} // namespace vldv::spectra
