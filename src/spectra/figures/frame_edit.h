#pragma once
#include <cstdint>
#include <span>

class CStorageDoc;

namespace vldv::spectra {

/// Replaces the samples of a sub-image as a step that can be undone, and tells the views to load again.
/// \throws std::length_error or std::bad_alloc
void replace_frame(CStorageDoc& document, unsigned image, unsigned sub, std::span<const std::int16_t> samples);

/// Replaces the samples of a surface of `width` times `height` samples: an image whose shape was changed meanwhile
/// takes this one.
void replace_frame(CStorageDoc& document, unsigned image, unsigned sub, std::span<const std::int16_t> samples,
                   unsigned width, unsigned height);

} // namespace vldv::spectra
