#include "curves/figures/force/force_packs.h"

#include "primitives/cpu.h"

namespace vldv::curves {

namespace {

constexpr std::size_t alignment = 64;

}

pack_work::pack_work(const curve_smoother& smoother_) : smoother(smoother_)
{
    const auto n = static_cast<std::size_t>(smoother.samples());
    const primitives::uniform_spline* const spline = smoother.splineOrNull();
    const std::size_t few = spline ? 0 : (n + packLanes - 1) / packLanes * packLanes;
    const std::size_t knots = spline ? static_cast<std::size_t>(spline->coefficients()) : 0;
    // One block holds the tables one behind the other, each in rows of one number of every curve side by side. A vector
    // promises no more alignment than its numbers need: the block has room to start on a cache line.
    block.resize((n + few + knots) * packLanes + alignment / sizeof(double));
    const auto misplaced = reinterpret_cast<std::uintptr_t>(block.data()) % alignment;
    steps = block.data() + (misplaced ? (alignment - misplaced) / sizeof(double) : 0);
    shortPart = steps + n * packLanes;
    coefficients = shortPart + few * packLanes;
    const auto words = static_cast<std::size_t>(sample_bits::wordsFor(smoother.samples()) * packLanes);
    steep.resize(words);
    flat.resize(words);
}

std::span<const pack_form> available_pack_forms() noexcept
{
#if defined(__x86_64__)
    static constexpr pack_form all[] = {mark_steps_plain, mark_steps_avx2, mark_steps_avx512};
#else
    static constexpr pack_form all[] = {mark_steps_plain};
#endif
    return primitives::runnable(all);
}

void mark_steps(const pack_source& source, const pack_thresholds& thresholds, pack_work& work, pack_form form) noexcept
{
    const primitives::uniform_spline* const spline = work.smoother.splineOrNull();
    form({source, thresholds, work.smoother.samples(), work.smoother.reach(),
          spline ? spline->view() : primitives::uniform_spline::tables{}, work.steps, work.shortPart, work.coefficients,
          work.steep.data(), work.flat.data()});
}

} // namespace vldv::curves
