#pragma once
#include "primitives/fft/fft_plan.h"

/// The two steps of an image's transform. A step falls into tasks that do not touch each other's numbers: a tile of
/// `rowNumbers` rows of the image, or a group of tiles of `lanes` columns of the half spectrum, where the columns that
/// mirror themselves share the last lane.
namespace vldv::primitives::fft {

template <class Number>
struct image_step {
    Number* image;
    int width, height;
    transform<Number> lines;    ///< of the rows or of the columns
    std::ptrdiff_t tileNumbers; ///< from a tile of a group to the next
    bool inverse;
    Number scale; ///< what the columns are multiplied with
};

/// Complex columns of the half spectrum that stand in two columns of the image.
static constexpr int paired_columns(int width) noexcept { return (width - 1) / 2; }

/// Neighbouring tiles of columns that are read and written together.
constexpr int tilesOfGroup = 4;

template <class Number>
int row_tasks(int height) noexcept
{
    return (height + rowNumbers<Number> - 1) / rowNumbers<Number>;
}
template <class Number>
int column_tasks(int width) noexcept
{
    return paired_columns(width) / lanes<Number> / tilesOfGroup + 1;
}

/// Does one task in aligned work space: `plan::tileNumbers()` for rows, `tilesOfGroup` times as much for columns. The
/// same bytes for all instruction sets.
template <class Number>
struct tile_kernels {
    void (*rows)(const image_step<Number>& step, int number, Number* tile);
    void (*columns)(const image_step<Number>& step, int number, Number* space);
};

/// Transforms an image with the kernels of one instruction set.
template <class Number>
void transform_image(const tile_kernels<Number>& kernels, Number* image, int width, int height, bool inverse,
                     unsigned threads);
extern template void transform_image(const tile_kernels<float>&, float*, int, int, bool, unsigned);
extern template void transform_image(const tile_kernels<double>&, double*, int, int, bool, unsigned);

} // namespace vldv::primitives::fft
