#pragma once
#include <cstdint>
#include <span>
#include <vector>

/// What thinning costs by its arithmetic alone, and its rule sample by sample.
namespace vldv::bench {

/// Whether a set sample goes, by its neighbours: bit k for direction k of `primitives::boundarySteps`.
bool is_thinned(unsigned neighbours, bool isOdd);
/// The steps until nothing changes any more, and the two that find that out.
int thinning_steps(std::span<const std::uint8_t> mask, int side);

/// The rule on every word of a square mask for a number of steps: no test of what changed, no strips to put together,
/// words of a register from one row. The widest registers that the machine has.
class thinning_floor {
public:
    explicit thinning_floor(int side_);
    void run(int steps);

private:
    struct alignas(64) line {
        std::uint64_t words[8];
    };
    int side;
    std::vector<line> words, others;
};

} // namespace vldv::bench
