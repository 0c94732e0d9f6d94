// Included by the sources of the kernels alone; see simd/vector.h.
#pragma once
#include "primitives/fft/fft_passes.h"

namespace vldv::primitives::fft {
namespace {

/// The rows of the image in a tile: of two rows that share a lane the first is its real part, the second its imaginary
/// part. Lanes beyond the last row repeat it and are not written.
template <class Number>
class row_tile {
public:
    row_tile(const image_step<Number>& step_, int number)
        : step(step_), parts(step_.inverse), first(number * rowNumbers<Number>)
    {
    }

    /// Whole rows of plain numbers into or out of the tile, in the order of `position` where there is one.
    void readPlain(Number* tile) const
    {
        const int blocks = step.width / wide<Number>;
        for (const int part : {parts.re, parts.im})
            for (int h = 0; h < lanes<Number>; h += wide<Number>) {
                for (int b = 0; b < blocks; ++b) {
                    vec<Number> v[wide<Number>];
                    for (int i = 0; i < wide<Number>; ++i) v[i] = load(source(part, h + i) + b * wide<Number>);
                    transpose<Number>(v);
                    Number* to = tile + std::ptrdiff_t{b} * wide<Number> * rowNumbers<Number> + part + h;
                    for (int i = 0; i < wide<Number>; ++i, to += rowNumbers<Number>) store(to, v[i]);
                }
                for (int x = blocks * wide<Number>; x < step.width; ++x)
                    for (int i = h; i < h + wide<Number>; ++i) element(tile, x, part, i) = source(part, i)[x];
            }
    }

    void writePlain(const Number* tile) const
    {
        const int blocks = step.width / wide<Number>;
        for (const int part : {parts.re, parts.im})
            for (int h = 0; h < lanes<Number>; h += wide<Number>) {
                for (int b = 0; b < blocks; ++b) {
                    vec<Number> v[wide<Number>];
                    for (int i = 0; i < wide<Number>; ++i) v[i] = load(result(tile, b * wide<Number> + i) + part + h);
                    writeBlock(v, part, h, b * wide<Number>);
                }
                for (int x = blocks * wide<Number>; x < step.width; ++x)
                    for (int i = h; i < h + wide<Number>; ++i)
                        if (isRow(part, i)) target(part, i)[x] = result(tile, x)[part + i];
            }
    }

    /// Twice the half spectra of both rows of each lane.
    void writeSpectra(const Number* tile) const
    {
        constexpr int pairs = wide<Number> / 2;
        const int count = paired_columns(step.width), blocks = count / pairs;
        for (int h = 0; h < lanes<Number>; h += wide<Number>) {
            for (int b = 0; b < blocks; ++b) {
                vec<Number> a[wide<Number>], second[wide<Number>];
                for (int i = 0; i < pairs; ++i) {
                    const int k = 1 + b * pairs + i;
                    const complex_vec<Number> z = load_complex(result(tile, k) + h);
                    const complex_vec<Number> mirror = load_complex(result(tile, step.width - k) + h);
                    a[2 * i] = z.re + mirror.re;
                    a[2 * i + 1] = z.im - mirror.im;
                    second[2 * i] = z.im + mirror.im;
                    second[2 * i + 1] = mirror.re - z.re;
                }
                writeBlock(a, parts.re, h, 1 + 2 * b * pairs);
                writeBlock(second, parts.im, h, 1 + 2 * b * pairs);
            }
        }
        for (int k = 1 + blocks * pairs; k <= count; ++k) writePair(tile, k);
        writeReal(tile, 0, 0);
        if (step.width % 2 == 0) writeReal(tile, step.width / 2, step.width - 1);
    }

    /// Joins the half spectra of both rows of each lane to the spectrum of a complex line.
    void readSpectra(Number* tile) const
    {
        constexpr int pairs = wide<Number> / 2;
        const int count = paired_columns(step.width), blocks = count / pairs;
        for (int h = 0; h < lanes<Number>; h += wide<Number>)
            for (int b = 0; b < blocks; ++b) {
                vec<Number> a[wide<Number>], second[wide<Number>];
                for (int i = 0; i < wide<Number>; ++i) {
                    a[i] = load(source(parts.re, h + i) + 1 + 2 * b * pairs);
                    second[i] = load(source(parts.im, h + i) + 1 + 2 * b * pairs);
                }
                transpose<Number>(a);
                transpose<Number>(second);
                for (int i = 0; i < pairs; ++i) {
                    const int k = 1 + b * pairs + i;
                    put(tile, k, h, a[2 * i] - second[2 * i + 1], a[2 * i + 1] + second[2 * i]);
                    put(tile, step.width - k, h, a[2 * i] + second[2 * i + 1], second[2 * i] - a[2 * i + 1]);
                }
            }
        for (int k = 1 + blocks * pairs; k <= count; ++k) readPair(tile, k);
        readReal(tile, 0, 0);
        if (step.width % 2 == 0) readReal(tile, step.width / 2, step.width - 1);
    }

private:
    int rowOf(int part, int lane) const { return first + lane + (part == parts.re ? 0 : lanes<Number>); }
    bool isRow(int part, int lane) const { return rowOf(part, lane) < step.height; }
    Number* target(int part, int lane) const { return step.image + std::ptrdiff_t{rowOf(part, lane)} * step.width; }
    const Number* source(int part, int lane) const
    {
        const int row = rowOf(part, lane);
        return step.image + std::ptrdiff_t{row < step.height ? row : step.height - 1} * step.width;
    }
    static Number& element(Number* tile, int row, int part, int lane)
    {
        return tile[std::ptrdiff_t{row} * rowNumbers<Number> + part + lane];
    }
    const Number* result(const Number* tile, int i) const
    {
        return tile + std::ptrdiff_t{step.lines.position[i]} * rowNumbers<Number>;
    }
    void put(Number* tile, int row, int h, vec<Number> re, vec<Number> im) const
    {
        store(&element(tile, row, parts.re, h), re);
        store(&element(tile, row, parts.im, h), im);
    }
    void writeBlock(vec<Number> (&v)[wide<Number>], int part, int h, int column) const
    {
        transpose<Number>(v);
        for (int i = 0; i < wide<Number>; ++i)
            if (isRow(part, h + i)) store(target(part, h + i) + column, v[i]);
    }
    void writePair(const Number* tile, int k) const
    {
        const Number *z = result(tile, k), *mirror = result(tile, step.width - k);
        for (int i = 0; i < lanes<Number>; ++i) {
            if (isRow(parts.re, i)) {
                target(parts.re, i)[2 * k - 1] = z[parts.re + i] + mirror[parts.re + i];
                target(parts.re, i)[2 * k] = z[parts.im + i] - mirror[parts.im + i];
            }
            if (isRow(parts.im, i)) {
                target(parts.im, i)[2 * k - 1] = z[parts.im + i] + mirror[parts.im + i];
                target(parts.im, i)[2 * k] = mirror[parts.re + i] - z[parts.re + i];
            }
        }
    }
    void readPair(Number* tile, int k) const
    {
        for (int i = 0; i < lanes<Number>; ++i) {
            const Number *a = source(parts.re, i) + 2 * k - 1, *b = source(parts.im, i) + 2 * k - 1;
            element(tile, k, parts.re, i) = a[0] - b[1];
            element(tile, k, parts.im, i) = a[1] + b[0];
            element(tile, step.width - k, parts.re, i) = a[0] + b[1];
            element(tile, step.width - k, parts.im, i) = b[0] - a[1];
        }
    }
    /// A bin that mirrors itself is real in both rows.
    void writeReal(const Number* tile, int k, int column) const
    {
        for (const int part : {parts.re, parts.im})
            for (int i = 0; i < lanes<Number>; ++i)
                if (isRow(part, i)) target(part, i)[column] = 2 * result(tile, k)[part + i];
    }
    void readReal(Number* tile, int k, int column) const
    {
        for (const int part : {parts.re, parts.im})
            for (int i = 0; i < lanes<Number>; ++i) element(tile, k, part, i) = source(part, i)[column];
    }

    const image_step<Number>& step;
    part_order<Number> parts;
    int first;
};

} // namespace
} // namespace vldv::primitives::fft
