#pragma once

/// Takes the straight line that fits best out of a row, in place: with i = 0 … width - 1, the mean m of the values and
/// the slope s = sum((i - c) * (z[i] - m)) / sum((i - c)^2), c = (width - 1) / 2, each z[i] becomes
/// float(double(z[i]) - (m - s * c + s * i)). Sums run in double precision, which is exact for rows of 16-bit numbers.
/// A row of one value becomes 0; an empty one is left alone.
void planefit_line_32f(float* row, int width) noexcept;
