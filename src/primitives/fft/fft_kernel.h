// Included by the sources of the kernels alone; see simd/vector.h.
#pragma once
#include "primitives/fft/fft_columns.h"
#include "primitives/fft/fft_rows.h"

namespace vldv::primitives::fft {
namespace {

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

template <class Number>
constexpr tile_kernels<Number> kernelsOfSet{transform_rows<Number>, transform_columns<Number>};

} // namespace
} // namespace vldv::primitives::fft
