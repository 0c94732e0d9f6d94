// Included by the sources of the kernels alone; see simd/vector.h.
#pragma once
#include "primitives/fft/fft_passes.h"

namespace vldv::primitives::fft {
namespace {

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

} // namespace
} // namespace vldv::primitives::fft
