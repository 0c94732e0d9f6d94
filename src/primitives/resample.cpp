#include "primitives/resample.h"

#include "primitives/cpu.h"
#include "primitives/numeric.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace primitives {

namespace {

/// What a target takes of one direction: `least` samples from `first` on, and one more where `more` is -1, not 0.
struct side_map {
    std::vector<int> first, more;
    int least = 1;
    int count(std::size_t i) const noexcept { return least - more[i]; }
};

struct taken {
    int first, end;
};
/// The definition of one direction: target i of `to` out of `from`.
taken taken_by(int i, int from, int to) noexcept
{
    const std::int64_t all = from, parts = to, at = i;
    if (to >= from) {
        const auto middle = static_cast<int>((2 * at + 1) * all / (2 * parts));
        return {middle, middle + 1};
    }
    return {static_cast<int>(at * all / parts), static_cast<int>((at + 1) * all / parts)};
}

side_map map_side(int from, int to)
{
    side_map out;
    out.least = to < from ? from / to : 1;
    out.first.reserve(static_cast<std::size_t>(to));
    out.more.reserve(static_cast<std::size_t>(to));
    for (int i = 0; i < to; ++i) {
        const taken part = taken_by(i, from, to);
        out.first.push_back(part.first);
        out.more.push_back(part.end - part.first > out.least ? -1 : 0);
    }
    return out;
}

/// Sums of rows, column by column: so many rows of 16-bit numbers fit 32 bits.
constexpr int mostRows = 65535;

__attribute__((always_inline)) inline void add_rows(const_heights source, int firstRow, int rows,
                                                    std::int32_t* sums) noexcept
{
    constexpr int lanes = 16, blocks = 4;
    typedef std::int16_t narrow __attribute__((vector_size(lanes * 2)));
    typedef std::int32_t wide __attribute__((vector_size(lanes * 4)));
    const std::int16_t* const top = source.row(firstRow);
    const std::ptrdiff_t step = source.step;
    int x = 0;
    for (; x + lanes * blocks <= source.width; x += lanes * blocks) {
        wide total[blocks] = {};
        const auto* at = reinterpret_cast<const char*>(top + x);
        for (int y = 0; y < rows; ++y, at += step)
            for (int b = 0; b < blocks; ++b) {
                narrow heights_;
                std::memcpy(&heights_, at + b * lanes * 2, sizeof heights_);
                total[b] += __builtin_convertvector(heights_, wide);
            }
        std::memcpy(sums + x, total, sizeof total);
    }
    for (; x < source.width; ++x) {
        sums[x] = 0;
        for (int y = 0; y < rows; ++y) sums[x] += source.row(firstRow + y)[x];
    }
}

/// Sums of `columns`, each over the columns that a target takes. One read past the last column is allowed.
template <int Least>
void add_columns(const std::int32_t* columns, const side_map& map, double* sums) noexcept
{
    const int least = Least > 0 ? Least : map.least;
    const std::size_t count = map.first.size();
    const int* const first = map.first.data();
    const int* const more = map.more.data();
    for (std::size_t i = 0; i < count; ++i) {
        const std::int32_t* const at = columns + first[i];
        std::int64_t sum = at[least] & more[i];
        for (int k = 0; k < least; ++k) sum += at[k];
        sums[i] += static_cast<double>(sum);
    }
}

void add_columns(const std::int32_t* columns, const side_map& map, double* sums) noexcept
{
    switch (map.least) {
    case 1:
        return add_columns<1>(columns, map, sums);
    case 2:
        return add_columns<2>(columns, map, sums);
    case 3:
        return add_columns<3>(columns, map, sums);
    case 4:
        return add_columns<4>(columns, map, sums);
    case 5:
        return add_columns<5>(columns, map, sums);
    case 6:
        return add_columns<6>(columns, map, sums);
    default:
        return add_columns<0>(columns, map, sums);
    }
}

/// Means of sums by multiplication. The mean plus a half, times the count, is a whole number of halves: with a quarter
/// of a count's share on top, truncation is never within reach of the rounding error while counts are below 2^32.
/// 32768 on top keeps everything positive.
struct mean_factors {
    std::vector<double> share, shift;

    mean_factors(const side_map& columns, int rows)
    {
        for (std::size_t i = 0; i < columns.first.size(); ++i) {
            const double count = static_cast<double>(columns.count(i)) * rows;
            share.push_back(1.0 / count);
            shift.push_back(32768.5 + 0.25 / count);
        }
    }
};

__attribute__((always_inline)) inline void write_means(const double* sums, const mean_factors& factors,
                                                       std::int16_t* out, std::size_t count) noexcept
{
    constexpr std::size_t lanes = 8;
    typedef double numbers __attribute__((vector_size(lanes * 8)));
    typedef std::int32_t whole __attribute__((vector_size(lanes * 4)));
    typedef std::int16_t narrow __attribute__((vector_size(lanes * 2)));
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        numbers sum, share, shift;
        std::memcpy(&sum, sums + i, sizeof sum);
        std::memcpy(&share, factors.share.data() + i, sizeof share);
        std::memcpy(&shift, factors.shift.data() + i, sizeof shift);
        const whole means = __builtin_convertvector(sum * share + shift, whole) - 32768;
        const narrow result = __builtin_convertvector(means, narrow);
        std::memcpy(out + i, &result, sizeof result);
    }
    for (; i < count; ++i)
        out[i] =
            static_cast<std::int16_t>(static_cast<std::int32_t>(sums[i] * factors.share[i] + factors.shift[i]) - 32768);
}

struct row_kernels {
    void (*addRows)(const_heights, int, int, std::int32_t*) noexcept;
    void (*writeMeans)(const double*, const mean_factors&, std::int16_t*, std::size_t) noexcept;
};

#if defined(__x86_64__)
#define VLDV_TARGET_512 __attribute__((target("avx512f,avx512bw,avx512dq,avx512vl")))
#define VLDV_TARGET_256 __attribute__((target("avx2")))
VLDV_TARGET_512 void add_rows_avx512(const_heights source, int first, int rows, std::int32_t* sums) noexcept
{
    add_rows(source, first, rows, sums);
}
VLDV_TARGET_256 void add_rows_avx2(const_heights source, int first, int rows, std::int32_t* sums) noexcept
{
    add_rows(source, first, rows, sums);
}
VLDV_TARGET_512 void write_means_avx512(const double* sums, const mean_factors& factors, std::int16_t* out,
                                        std::size_t count) noexcept
{
    write_means(sums, factors, out, count);
}
VLDV_TARGET_256 void write_means_avx2(const double* sums, const mean_factors& factors, std::int16_t* out,
                                      std::size_t count) noexcept
{
    write_means(sums, factors, out, count);
}
#endif
void add_rows_plain(const_heights source, int first, int rows, std::int32_t* sums) noexcept
{
    add_rows(source, first, rows, sums);
}
void write_means_plain(const double* sums, const mean_factors& factors, std::int16_t* out, std::size_t count) noexcept
{
    write_means(sums, factors, out, count);
}

row_kernels best_kernels() noexcept
{
#if defined(__x86_64__)
    if (has_vbmi()) return {add_rows_avx512, write_means_avx512};
    if (has_avx2()) return {add_rows_avx2, write_means_avx2};
#endif
    return {add_rows_plain, write_means_plain};
}

/// Rows of means: at least one direction shrinks.
void shrink(const_heights source, heights target)
{
    const side_map columns = map_side(source.width, target.width), rows = map_side(source.height, target.height);
    const mean_factors factors[] = {{columns, rows.least}, {columns, rows.least + 1}};
    const row_kernels kernels = best_kernels();
    const auto width = static_cast<std::size_t>(target.width);
    std::vector<std::int32_t> columnSums(static_cast<std::size_t>(source.width) + 1); // and one read past the end
    std::vector<double> sums(width);
    for (int y = 0; y < target.height; ++y) {
        const auto index = static_cast<std::size_t>(y);
        const int first = rows.first[index], count = rows.count(index);
        std::ranges::fill(sums, 0.0);
        for (int done = 0; done < count; done += mostRows) {
            kernels.addRows(source, first + done, std::min(mostRows, count - done), columnSums.data());
            add_columns(columnSums.data(), columns, sums.data());
        }
        kernels.writeMeans(sums.data(), factors[count > rows.least], target.row(y), width);
    }
}

/// Both directions grow, or stay: rows that repeat are copied.
void enlarge(const_heights source, heights target)
{
    const side_map columns = map_side(source.width, target.width), rows = map_side(source.height, target.height);
    const auto width = static_cast<std::size_t>(target.width);
    for (int y = 0; y < target.height; ++y) {
        const auto index = static_cast<std::size_t>(y);
        if (y > 0 && rows.first[index] == rows.first[index - 1]) {
            std::memcpy(target.row(y), target.row(y - 1), width * sizeof(std::int16_t));
            continue;
        }
        const std::int16_t* const from = source.row(rows.first[index]);
        std::int16_t* const to = target.row(y);
        for (std::size_t x = 0; x < width; ++x) to[x] = from[columns.first[x]];
    }
}

} // namespace

void resample_reference(const_heights source, heights target) noexcept
{
    if (source.width <= 0 || source.height <= 0) return;
    for (int y = 0; y < target.height; ++y)
        for (int x = 0; x < target.width; ++x) {
            const taken rows = taken_by(y, source.height, target.height);
            const taken columns = taken_by(x, source.width, target.width);
            std::int64_t sum = 0, count = 0;
            for (int row = rows.first; row < rows.end; ++row)
                for (int column = columns.first; column < columns.end; ++column, ++count)
                    sum += source.row(row)[column];
            const std::int64_t twice = 2 * sum + count;
            const std::int64_t mean = twice / (2 * count) - (twice % (2 * count) < 0 ? 1 : 0);
            target.row(y)[x] = static_cast<std::int16_t>(mean);
        }
}

} // namespace primitives

void resample(const short* source, int sourceWidth, int sourceHeight, int sourceStep, short* target, int targetWidth,
              int targetHeight, int targetStep)
{
    if (sourceWidth <= 0 || sourceHeight <= 0 || targetWidth <= 0 || targetHeight <= 0) return;
    const primitives::const_heights from{source, sourceWidth, sourceHeight, sourceStep};
    const primitives::heights to{target, targetWidth, targetHeight, targetStep};
    if (targetWidth < sourceWidth || targetHeight < sourceHeight)
        primitives::shrink(from, to);
    else
        primitives::enlarge(from, to);
}
