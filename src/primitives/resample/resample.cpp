#include "primitives/resample/resample.h"

#include "primitives/numeric.h"
#include "primitives/simd/kernels.h"

#include <algorithm>
#include <cstring>
#include <future>
#include <system_error>
#include <thread>
#include <vector>

using namespace vldv;

namespace vldv::primitives {

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
    // Growing, a target takes the sample under its middle. Shrinking, it takes those from its own edge up to the edge
    // of the next one, so that each sample counts exactly once.
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

constexpr std::int64_t worthAThread = 1 << 22; // samples: some tenths of a millisecond

/// Sums of rows, column by column: so many rows of 16-bit numbers fit 32 bits.
constexpr int mostRows = 65535;

/// Asks for the rows that the next target takes, line by line behind the column that is being summed: their way into
/// the cache is hidden behind the arithmetic.
class row_fetcher {
public:
    explicit row_fetcher(const_height_block rows_) noexcept : rows(rows_)
    {
        rows.height = std::min(rows.height, mostFetched);
    }
    void reach(int column) noexcept
    {
        if (column < next || next >= rows.width) return;
        for (int y = 0; y < rows.height; ++y) __builtin_prefetch(rows.row(y) + next);
        next += perLine;
    }

private:
    static constexpr int mostFetched = 16, perLine = 64 / sizeof(std::int16_t);
    const_height_block rows;
    int next = 0;
};

/// Sums of column sums, each over the columns that a target takes. One read past the last column is allowed.
template <int Least, class Sum>
void add_columns(const std::int32_t* columns, const side_map& map, row_fetcher fetcher, Sum* sums) noexcept
{
    const int least = Least > 0 ? Least : map.least;
    const std::size_t count = map.first.size();
    const int* const first = map.first.data();
    const int* const more = map.more.data();
    for (std::size_t i = 0; i < count; ++i) {
        const int column = first[i];
        const std::int32_t* const at = columns + column;
        // -1 keeps the additional sample and 0 drops it, without a branch that could be guessed wrong.
        Sum sum = at[least] & more[i];
        for (int k = 0; k < least; ++k) sum += at[k];
        sums[i] += sum;
        fetcher.reach(column);
    }
}

template <class Sum>
void add_columns(const std::int32_t* columns, const side_map& map, row_fetcher fetcher, Sum* sums) noexcept
{
    switch (map.least) {
    case 1:
        return add_columns<1>(columns, map, fetcher, sums);
    case 2:
        return add_columns<2>(columns, map, fetcher, sums);
    case 3:
        return add_columns<3>(columns, map, fetcher, sums);
    case 4:
        return add_columns<4>(columns, map, fetcher, sums);
    case 5:
        return add_columns<5>(columns, map, fetcher, sums);
    case 6:
        return add_columns<6>(columns, map, fetcher, sums);
    default:
        return add_columns<0>(columns, map, fetcher, sums);
    }
}

/// The mean by multiplication. Times the count, it is a whole number of halves: with a quarter of a sample's share on
/// top of the half that rounds, truncation never comes within reach of the rounding error while counts are below 2^32.
/// 32768 on top keeps all positive.
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
    std::int16_t mean(double sum, std::size_t i) const noexcept
    {
        return static_cast<std::int16_t>(static_cast<std::int32_t>(sum * share[i] + shift[i]) - 32768);
    }
};

void write_means(std::span<const std::int32_t> sums, const mean_factors& factors, std::int16_t* out) noexcept
{
    std::size_t i = kernels().writeMeans(sums.data(), sums.size(), factors.share.data(), factors.shift.data(), out);
    for (; i < sums.size(); ++i) out[i] = factors.mean(sums[i], i);
}
void write_means(std::span<const std::int64_t> sums, const mean_factors& factors, std::int16_t* out) noexcept
{
    for (std::size_t i = 0; i < sums.size(); ++i) out[i] = factors.mean(static_cast<double>(sums[i]), i);
}

/// Rows of a target from `first` on.
struct row_band {
    std::size_t first, end;
};

/// Rows of means: at least one direction shrinks. `Sum` holds the sum of a target's samples. \return the range of the
/// samples in them
template <class Sum>
height_range shrink(const_height_block source, height_block target, const side_map& columns, const side_map& rows,
                    row_band band)
{
    const mean_factors factors[] = {{columns, rows.least}, {columns, rows.least + 1}};
    const auto width = static_cast<std::size_t>(target.width), height = band.end;
    std::vector<std::int32_t> columnSums(static_cast<std::size_t>(source.width) + 1); // and one read past the end
    std::vector<Sum> sums(width);
    height_range range;
    for (std::size_t y = band.first; y < height; ++y) {
        const const_height_block taken = source.rows(rows.first[y], rows.count(y));
        const const_height_block next =
            y + 1 < height ? source.rows(rows.first[y + 1], rows.count(y + 1)) : const_height_block{};
        // Rows are summed column by column first, which reads the source in its order and fills whole registers; what
        // is left are a few additions a target.
        std::ranges::fill(sums, Sum{0});
        for (int done = 0; done < taken.height; done += mostRows) {
            range.include(
                kernels().addRows(taken.rows(done, std::min(mostRows, taken.height - done)), columnSums.data()));
            add_columns(columnSums.data(), columns, row_fetcher(next), sums.data());
        }
        write_means(std::span<const Sum>(sums), factors[taken.height > rows.least], target.row(static_cast<int>(y)));
    }
    return range;
}

height_range shrink(const_height_block source, height_block target)
{
    const side_map columns = map_side(source.width, target.width), rows = map_side(source.height, target.height);
    const std::int64_t most = (std::int64_t{columns.least} + 1) * (std::int64_t{rows.least} + 1);
    const auto shrinkBand = [&](row_band band) {
        return most <= mostRows ? shrink<std::int32_t>(source, target, columns, rows, band)
                                : shrink<std::int64_t>(source, target, columns, rows, band);
    };
    const auto height = static_cast<std::size_t>(target.height);
    const bool isLarge = std::int64_t{source.width} * source.height >= worthAThread && target.height > 1;
    if (!isLarge || std::thread::hardware_concurrency() < 2) return shrinkBand({0, height});
    std::future<height_range> upper;
    try {
        upper = std::async(std::launch::async, shrinkBand, row_band{height / 2, height});
    } catch (const std::system_error&) { // no thread to be had
        return shrinkBand({0, height});
    }
    height_range range = shrinkBand({0, height / 2});
    range.include(upper.get());
    return range;
}

/// Both directions grow, or stay: rows that repeat are copied.
void enlarge(const_height_block source, height_block target)
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

height_range find_block_range(const_height_block block) noexcept
{
    const auto width = static_cast<std::size_t>(std::max(block.width, 0));
    // Rows that lie one behind another are one stretch.
    if (block.height > 1 && block.step == static_cast<std::ptrdiff_t>(width * sizeof(std::int16_t)))
        return find_range({block.data, width * static_cast<std::size_t>(block.height)});
    height_range range;
    for (int y = 0; y < block.height; ++y) range.include(find_range({block.row(y), width}));
    return range;
}

void resample_reference(const_height_block source, height_block target) noexcept
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

height_range resample_and_range(const_height_block source, height_block target)
{
    if (source.width <= 0 || source.height <= 0 || target.width <= 0 || target.height <= 0) return {};
    if (target.width < source.width || target.height < source.height) return shrink(source, target);
    enlarge(source, target);
    return find_block_range(source);
}

} // namespace vldv::primitives

void resample(const short* source, int sourceWidth, int sourceHeight, int sourceStep, short* target, int targetWidth,
              int targetHeight, int targetStep)
{
    primitives::resample_and_range({source, sourceWidth, sourceHeight, sourceStep},
                                   {target, targetWidth, targetHeight, targetStep});
}
