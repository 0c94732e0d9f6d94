#include "spectra/figures/features/mask_history.h"

#include <utility>

namespace vldv::spectra {

namespace {

constexpr std::size_t mostBytes = std::size_t{64} << 20;

std::size_t bytes_of(const primitives::bit_image& mask) noexcept
{
    return static_cast<std::size_t>(primitives::words_for(mask.width())) * static_cast<std::size_t>(mask.height()) *
           sizeof(std::uint64_t);
}

} // namespace

void mask_history::keep(const primitives::bit_image& mask)
{
    later.clear();
    earlier.push_back(mask);
    while (earlier.size() > 1 && earlier.size() * bytes_of(mask) > mostBytes) earlier.pop_front();
}

void mask_history::step(primitives::bit_image& mask, states& from, states& to)
{
    if (from.empty()) return;
    to.push_back(std::exchange(mask, std::move(from.back())));
    from.pop_back();
}

void mask_history::clear() noexcept
{
    earlier.clear();
    later.clear();
}

} // namespace vldv::spectra
