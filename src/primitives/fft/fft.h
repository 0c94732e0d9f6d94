#pragma once
#include <span>

/// Fourier transforms of real images, in place: an image of W x H numbers becomes as many numbers of its half spectrum
/// and back. With F(c, r) = sum over x, y of z(x, y) exp(-2 pi i (c x / W + r y / H)):
/// - column c of the spectrum, 0 < c < W / 2, stands in the columns 2 c - 1 (real parts) and 2 c (imaginary parts),
///   row r of it in row r;
/// - column 0 mirrors itself, F(0, H - r) = conj F(0, r), and stands in column 0 alone: row 0 holds F(0, 0), the rows
///   2 r - 1 and 2 r the real and the imaginary part of F(0, r), and the last row F(0, H / 2) where H is even;
/// - so does column W / 2 of an even W, in column W - 1.
/// F(W - c, H - r) = conj F(c, r) gives the rest. Any size will do; sizes whose prime factors are at most 13 cost
/// least.
namespace vldv::primitives {

/// F / (W H): a constant image z gives F(0, 0) = z, a sine of amplitude a gives two bins of magnitude a / 2.
/// \param image    rows of `width`, `width` times `height` numbers
/// \param threads  at most that many work on it; the result does not depend on their number
/// \throws std::bad_alloc, or std::length_error for a side beyond 2^28, with the image unchanged
void forward_fft(std::span<float> image, int width, int height, unsigned threads = 1);
void forward_fft(std::span<double> image, int width, int height, unsigned threads = 1);
/// The way back: what `forward_fft` made becomes the image again, to rounding.
void inverse_fft(std::span<float> spectrum, int width, int height, unsigned threads = 1);
void inverse_fft(std::span<double> spectrum, int width, int height, unsigned threads = 1);

} // namespace vldv::primitives
