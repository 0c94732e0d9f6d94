#pragma once
#include "primitives/map/bit_image.h"
#include "primitives/resample/resample.h"

namespace vldv::spectra {

/// Parts areas of a mask that touch: every summit holds what lies around it, down to where it meets another one (the
/// watershed by immersion of L. Vincent and P. Soille, IEEE Trans. Pattern Anal. Mach. Intell. 13, 583, 1991, on the
/// heights turned over). The samples where they meet are cleared in the mask, so that no sample of one summit has a
/// neighbour of another, corners included.
/// \param mask   over the block
/// \param depth  how far a summit must stand above where it meets a higher one to be one of its own, raw heights; 0 or
///               less: by one step
/// \throws std::bad_alloc
void part_by_watershed(primitives::const_height_block heights, primitives::bit_image& mask, int depth);

} // namespace vldv::spectra
