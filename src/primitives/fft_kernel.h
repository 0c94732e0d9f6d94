// Included by the sources of the kernels alone; see fft_vector.h.
#pragma once
#include "primitives/fft_passes.h"

namespace primitives::fft {
namespace {

/// Where the parts of a number stand in a row of a tile. They change places on the way back, which makes the forward
/// transform the inverse one.
template <class Number>
struct part_order {
    explicit part_order(bool inverse) : re(inverse ? lanes<Number> : 0), im(lanes<Number> - re) {}
    int re, im;
};

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
    int rowOf(int part, int lane) const { return first + (part == parts.re ? 0 : lanes<Number>)+lane; }
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

/// Columns of the half spectrum in a group of tiles, and in a free lane of the last tile of all the columns that mirror
/// themselves. A row of the group lies together in the image: single tiles would touch each line of the cache twice.
template <class Number>
class column_group {
public:
    column_group(const image_step<Number>& step_, int number)
        : step(step_), parts(step_.inverse), first(1 + 2 * number * columnsOfGroup)
    {
        const int left = paired_columns(step.width) - number * columnsOfGroup;
        fullTiles = left / lanes<Number> < tilesOfGroup ? left / lanes<Number> : tilesOfGroup;
        count = fullTiles < tilesOfGroup ? left % lanes<Number> : -1;
    }

    bool hasLastTile() const { return count >= 0; }
    int tiles() const { return fullTiles + (hasLastTile() ? 1 : 0); }
    Number* tile(Number* space, int t) const { return space + t * step.tileNumbers; }

    void read(Number* space) const
    {
        for (int y = 0; y < step.height; ++y) {
            const Number* from = image(y) + first;
            Number* to = space + std::ptrdiff_t{y} * rowNumbers<Number>;
            for (int t = 0; t < fullTiles; ++t, from += rowNumbers<Number>, to += step.tileNumbers)
                for (int h = 0; h < lanes<Number>; h += wide<Number>) {
                    const auto x = split_pairs<Number>(load(from + 2 * h), load(from + 2 * h + wide<Number>));
                    store(to + parts.re + h, x.re);
                    store(to + parts.im + h, x.im);
                }
        }
        if (hasLastTile()) readLast(tile(space, fullTiles));
    }

    /// Writes what the tiles became; `results` are their places.
    void write(const Number* const* results) const
    {
        for (int y = 0; y < step.height; ++y) {
            Number* to = image(y) + first;
            for (int t = 0; t < fullTiles; ++t, to += rowNumbers<Number>) {
                const Number* const from = result(results[t], y);
                for (int h = 0; h < lanes<Number>; h += wide<Number>)
                    store_pairs<Number>(
                        to + 2 * h, {load(from + parts.re + h) * step.scale, load(from + parts.im + h) * step.scale});
            }
        }
        if (hasLastTile()) writeLast(results[fullTiles]);
    }

private:
    static constexpr int columnsOfGroup = tilesOfGroup * lanes<Number>;

    Number* lastColumns(int y) const { return image(y) + first + fullTiles * rowNumbers<Number>; }
    void readLast(Number* tile) const
    {
        for (int y = 0; y < step.height; ++y) {
            const Number* const from = lastColumns(y);
            Number* const to = tile + std::ptrdiff_t{y} * rowNumbers<Number>;
            std::memset(to, 0, sizeof(Number) * rowNumbers<Number>);
            for (int i = 0; i < count; ++i) {
                to[parts.re + i] = from[2 * i];
                to[parts.im + i] = from[2 * i + 1];
            }
        }
        if (step.inverse)
            readMirrored(tile);
        else
            readReal(tile);
    }
    void writeLast(const Number* tile) const
    {
        for (int y = 0; y < step.height; ++y) {
            const Number* const from = result(tile, y);
            Number* const to = lastColumns(y);
            for (int i = 0; i < count; ++i) {
                to[2 * i] = from[parts.re + i] * step.scale;
                to[2 * i + 1] = from[parts.im + i] * step.scale;
            }
        }
        if (step.inverse)
            writeReal(tile);
        else
            writeMirrored(tile);
    }
    bool hasMiddle() const { return step.width % 2 == 0; }
    Number* image(int y) const { return step.image + std::ptrdiff_t{y} * step.width; }
    const Number* result(const Number* tile, int i) const
    {
        return tile + std::ptrdiff_t{step.lines.position[i]} * rowNumbers<Number>;
    }

    /// Columns 0 and W / 2, real numbers before the columns are transformed, as one complex column.
    void readReal(Number* tile) const
    {
        for (int y = 0; y < step.height; ++y) {
            Number* const to = tile + std::ptrdiff_t{y} * rowNumbers<Number> + count;
            to[parts.re] = image(y)[0];
            to[parts.im] = hasMiddle() ? image(y)[step.width - 1] : Number{};
        }
    }
    void writeReal(const Number* tile) const
    {
        for (int y = 0; y < step.height; ++y) {
            const Number* const from = result(tile, y) + count;
            image(y)[0] = from[parts.re] * step.scale;
            if (hasMiddle()) image(y)[step.width - 1] = from[parts.im] * step.scale;
        }
    }
    void writeMirrored(const Number* tile) const
    {
        const Number scale = step.scale / 2;
        for (int r = 0; 2 * r <= step.height; ++r) {
            const Number *z = result(tile, r) + count, *mirror = result(tile, (step.height - r) % step.height) + count;
            const Number parts0[2] = {z[parts.re] + mirror[parts.re], z[parts.im] - mirror[parts.im]};
            const Number parts1[2] = {z[parts.im] + mirror[parts.im], mirror[parts.re] - z[parts.re]};
            for (int part = 0; part < (isReal(r) ? 1 : 2); ++part) {
                Number* const row = image(packedRow(r) + part);
                row[0] = parts0[part] * scale;
                if (hasMiddle()) row[step.width - 1] = parts1[part] * scale;
            }
        }
    }
    void readMirrored(Number* tile) const
    {
        for (int r = 0; 2 * r <= step.height; ++r) {
            Number a[2]{}, b[2]{};
            for (int part = 0; part < (isReal(r) ? 1 : 2); ++part) {
                const Number* const row = image(packedRow(r) + part);
                a[part] = row[0];
                b[part] = hasMiddle() ? row[step.width - 1] : Number{};
            }
            const std::ptrdiff_t up = (step.height - r) % step.height;
            Number *const z = tile + std::ptrdiff_t{r} * rowNumbers<Number> + count, *const mirror =
                                                                                         tile +
                                                                                         up * rowNumbers<Number> +
                                                                                         count;
            mirror[parts.re] = a[0] + b[1];
            mirror[parts.im] = b[0] - a[1];
            z[parts.re] = a[0] - b[1];
            z[parts.im] = a[1] + b[0];
        }
    }
    bool isReal(int r) const { return r == 0 || 2 * r == step.height; }
    static int packedRow(int r) { return r == 0 ? 0 : 2 * r - 1; }

    const image_step<Number>& step;
    part_order<Number> parts;
    int first, fullTiles;
    int count; ///< columns of the last tile of all; -1 where it is in another group
};

template <class Number>
void transform_rows(const image_step<Number>& step, int number, Number* tile)
{
    const row_tile<Number> rows(step, number);
    if (step.inverse) {
        rows.readSpectra(tile);
        rows.writePlain(transform_lines(step.lines, tile));
    } else {
        rows.readPlain(tile);
        rows.writeSpectra(transform_lines(step.lines, tile));
    }
}

template <class Number>
void transform_columns(const image_step<Number>& step, int number, Number* space)
{
    const column_group<Number> columns(step, number);
    columns.read(space);
    const Number* results[tilesOfGroup];
    for (int t = 0; t < columns.tiles(); ++t) results[t] = transform_lines(step.lines, columns.tile(space, t));
    columns.write(results);
}

} // namespace
} // namespace primitives::fft
