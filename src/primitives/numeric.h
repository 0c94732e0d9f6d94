#pragma once
#include "primitives/spline/spline.h"
#include "primitives/spline/uniform_spline.h"
#include "vldv_api.h"

/// Takes the straight line that fits best out of a row, in place: with i = 0 … width - 1, the mean m of the values and
/// the slope s = sum((i - c) * (z[i] - m)) / sum((i - c)^2), c = (width - 1) / 2, each z[i] becomes
/// float(double(z[i]) - (m - s * c + s * i)). Sums run in double precision, which is exact for rows of 16-bit numbers.
/// A row of one value becomes 0; an empty one is left alone.
VLDV_API void planefit_line_32f(float* row, int width) noexcept;

/// An image of 16-bit numbers in another size; steps are the bytes from row to row. Each direction goes by itself:
/// where it grows, target i of n takes source floor((2 i + 1) N / (2 n)) of N, the one under its middle; where it
/// shrinks, it takes the sources from floor(i N / n) up to floor((i + 1) N / n). A target is the mean of what it takes,
/// halves up. An empty source or target does nothing. \throws std::bad_alloc
VLDV_API void resample(const short* source, int sourceWidth, int sourceHeight, int sourceStep, short* target,
                       int targetWidth, int targetHeight, int targetStep);

/// Thins the areas of a mask to their skeletons, in place: lines one sample wide that are connected over sides and
/// corners as the areas were, with the same holes and ends. Bytes that are not 0 belong to an area; those of the
/// skeleton keep their value, all others become 0. `stride` bytes from row to row. Beyond the edge all is clear.
/// \param connectivity  2: over sides and corners; other values give the same \throws std::bad_alloc
VLDV_API void findSkeletonByThinning(unsigned char* image, int stride, int width, int height, int connectivity);

/// The raw level of a surface's base plane: the centre of the lowest peak that stands out in the histogram of the
/// heights. Noise, a slight tilt and features on up to half of the area do not move it by more than a small part of the
/// peak's width; of features that are all as high as each other, too, the base is the lower peak.
/// `step` bytes from row to row. 0 for an empty image. \throws std::bad_alloc
/// \param reserved  pass 0
VLDV_API short find_zero_level(const short* data, int width, int height, int step, int reserved);
/// The zero level as a position in a histogram of the heights, between two bins too; 0 for an empty one. \throws
/// std::bad_alloc
VLDV_API double find_zero_level(const unsigned* counts, int bins);
