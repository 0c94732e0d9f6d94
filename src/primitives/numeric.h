#pragma once
#include "primitives/spline.h"
#include "primitives/uniform_spline.h"

/// Takes the straight line that fits best out of a row, in place: with i = 0 … width - 1, the mean m of the values and
/// the slope s = sum((i - c) * (z[i] - m)) / sum((i - c)^2), c = (width - 1) / 2, each z[i] becomes
/// float(double(z[i]) - (m - s * c + s * i)). Sums run in double precision, which is exact for rows of 16-bit numbers.
/// A row of one value becomes 0; an empty one is left alone.
void planefit_line_32f(float* row, int width) noexcept;

/// An image of 16-bit numbers in another size; steps are the bytes from row to row. Each direction goes by itself:
/// where it grows, target i of n takes source floor((2 i + 1) N / (2 n)) of N, the one under its middle; where it
/// shrinks, it takes the sources from floor(i N / n) up to floor((i + 1) N / n). A target is the mean of what it takes,
/// halves up. An empty source or target does nothing. \throws std::bad_alloc
void resample(const short* source, int sourceWidth, int sourceHeight, int sourceStep, short* target, int targetWidth,
              int targetHeight, int targetStep);
