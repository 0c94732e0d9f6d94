#pragma once
#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace vldv::curves {

/// One bit a sample, 64 in a word, the first lowest. Searches run over whole words. Looks at words that belong to
/// another; bits behind the last sample are 0.
class sample_bits {
public:
    /// \param stride_  words from one of this row to the next
    sample_bits(const std::uint64_t* words_, int samples_, int stride_ = 1) noexcept
        : words(words_), samples(samples_), stride(stride_)
    {
    }
    static constexpr int wordsFor(int count) noexcept { return (count + 63) / 64; }

    int size() const noexcept { return samples; }
    /// The first sample at or after `from` with (or without) its bit, or `size()`.
    int next(int from, bool value) const noexcept
    {
        for (int i = from; i < samples; i = (i | 63) + 1)
            if (const std::uint64_t rest = word(i, value) >> (i & 63); rest != 0)
                return std::min(i + std::countr_zero(rest), samples);
        return samples;
    }
    /// The last sample at or before `from` with (or without) its bit, or -1.
    int previous(int from, bool value) const noexcept
    {
        for (int i = from; i >= 0; i = (i & ~63) - 1)
            if (const std::uint64_t rest = word(i, value) << (63 - (i & 63)); rest != 0)
                return i - std::countl_zero(rest);
        return -1;
    }

private:
    std::uint64_t word(int i, bool value) const noexcept
    {
        const std::uint64_t found = words[static_cast<std::ptrdiff_t>(i / 64) * stride];
        return value ? found : ~found;
    }

    const std::uint64_t* words;
    int samples, stride;
};

} // namespace vldv::curves
