#include "thinning_floor.h"

#include "primitives/cpu.h"
#include "primitives/mask/thinning.h"
#include "primitives/mask/thinning_rule.h"
#include "primitives/simd/kernels.h"

#include <cstddef>

namespace vldv::bench {

namespace {

using namespace primitives;
using thinning_rule::around;

template <class Word>
[[gnu::always_inline]] inline void load_row(const std::uint64_t* at, Word& west, Word& centre, Word& east)
{
    thinning_rule::load_row(at - 1, at, at + 1, west, centre, east);
}

template <class Word>
[[gnu::always_inline]] inline void whole_step(const std::uint64_t* from, std::uint64_t* to, std::size_t rowWords,
                                              std::size_t rows, bool isOdd)
{
    constexpr std::size_t wordsAtOnce = sizeof(Word) / sizeof(std::uint64_t);
    for (std::size_t at = rowWords; at < rowWords * (rows + 1); at += wordsAtOnce) {
        around<Word> of;
        Word centre, out;
        load_row(from + at - rowWords, of.southWest, of.south, of.southEast);
        load_row(from + at, of.west, centre, of.east);
        load_row(from + at + rowWords, of.northWest, of.north, of.northEast);
        thinning_rule::taken_away(centre, of, isOdd, out);
        centre &= ~out;
        std::memcpy(to + at, &centre, sizeof centre);
    }
}

using step_function = void(const std::uint64_t*, std::uint64_t*, std::size_t, std::size_t, bool);

void step_portable(const std::uint64_t* from, std::uint64_t* to, std::size_t rowWords, std::size_t rows, bool isOdd)
{
    whole_step<std::uint64_t>(from, to, rowWords, rows, isOdd);
}
#if defined(__x86_64__)
using eight_words = std::uint64_t __attribute__((vector_size(64)));
using four_words = std::uint64_t __attribute__((vector_size(32)));
__attribute__((target("avx512f,avx512bw,avx512vl"))) void
step_avx512(const std::uint64_t* from, std::uint64_t* to, std::size_t rowWords, std::size_t rows, bool isOdd)
{
    whole_step<eight_words>(from, to, rowWords, rows, isOdd);
}
__attribute__((target("avx2"))) void step_avx2(const std::uint64_t* from, std::uint64_t* to, std::size_t rowWords,
                                               std::size_t rows, bool isOdd)
{
    whole_step<four_words>(from, to, rowWords, rows, isOdd);
}
#endif

step_function* widest()
{
#if defined(__x86_64__)
    if (has_avx512()) return step_avx512;
    if (has_avx2()) return step_avx2;
#endif
    return step_portable;
}

} // namespace

bool is_thinned(unsigned neighbours, bool isOdd)
{
    const auto at = [neighbours](int way) -> std::uint64_t { return neighbours >> way & 1; };
    std::uint64_t out = 0;
    thinning_rule::taken_away<std::uint64_t>(1, {at(2), at(1), at(0), at(7), at(6), at(5), at(4), at(3)}, isOdd, out);
    return (out & 1) != 0;
}

int thinning_steps(std::span<const std::uint8_t> mask, int side)
{
    bit_strips work;
    work.assign(side, side);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            if (mask[static_cast<std::size_t>(y) * static_cast<std::size_t>(side) + static_cast<std::size_t>(x)] != 0)
                work.set(y, x, x + 1);
    std::vector<std::uint64_t> scratch(thinning_step::scratchWords(work));
    std::vector<std::uint32_t> awake(static_cast<std::size_t>((work.strips() + 2) * (work.tilesOfStrip() + 2)),
                                     ~0u / 2);
    int last = 0, steps = 0;
    for (; steps < last + 2; ++steps) {
        std::fill(awake.begin(), awake.end(), ~0u / 2);
        if (kernels().thinningStep({work, scratch.data(), awake.data(), static_cast<std::uint32_t>(steps) + 1}))
            last = steps + 1;
    }
    return steps;
}

thinning_floor::thinning_floor(int side_) : side(side_)
{
    // A row more on either side, and room for the word before the first and behind the last.
    const auto count = static_cast<std::size_t>(side / 64) * static_cast<std::size_t>(side + 2) / 8 + 2;
    words.assign(count, {0x00FFF0000FFFF000, 0, 0x0FF0, 0x0FFF, 0x00FF, 0, 1, 3});
    others = words;
}

void thinning_floor::run(int steps)
{
    step_function* const step = widest();
    for (int number = 1; number <= steps; ++number) {
        step(words[1].words, others[1].words, static_cast<std::size_t>(side / 64), static_cast<std::size_t>(side),
             number % 2 != 0);
        words.swap(others);
    }
}

} // namespace vldv::bench
