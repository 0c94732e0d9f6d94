#pragma once
#include <span>

/// How a curve resembles itself over a distance. Each writes one number a sample of the curve into `out`, which may be
/// the curve itself; distances k run from 0. All take O(n log n).
namespace vldv::curves {

/// Mean of y[i] y[i + k] over all pairs, the mean of y not removed, over its value at k = 0 unless that is 0.
void autocorrelate(std::span<const float> y, std::span<float> out);
/// The curve is laid down twice in a row; the sum over all pairs in there, of which there are 2 n - k, over its value
/// at k = 0 unless that is 0.
void autocorrelate_cyclic(std::span<const float> y, std::span<float> out);
/// Mean of (y[i] - y[i + k])^2 over all pairs.
void structure(std::span<const float> y, std::span<float> out);
/// Mean of (y[i] - y[i + k])^2 over the n pairs that the curve, laid down twice in a row, gives for each distance.
void structure_cyclic(std::span<const float> y, std::span<float> out);

// The sums as they are defined.
void structure_reference(std::span<const float> y, std::span<float> out);
void structure_cyclic_reference(std::span<const float> y, std::span<float> out);

} // namespace vldv::curves
