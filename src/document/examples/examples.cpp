#include "document/examples/examples.h"

namespace vldv::document {

namespace {

constexpr example_row rows[] = {
    {"atomic-steps.spm", "Atomic steps", 2, make_atomic_steps},
    {"atomic-lattice.spm", "Atomic lattice", 2, make_atomic_lattice},
    {"grains.spm", "Grains on a tilted plane", 2, make_grains},
    {"forward-reverse.spm", "Forward and reverse scan", 2, make_two_directions},
    {"section.spm", "Profile across trenches", 1, make_section},
    {"force-curve.spm", "Force curve with adhesion", 1, make_force_curve},
    {"force-volume.spm", "Force volume", 2, make_force_volume}, // the height under its curves
};

} // namespace

std::span<const example_row> example_table() noexcept { return rows; }

std::vector<example> make_examples()
{
    std::vector<example> all;
    for (const example_row& row : rows) all.push_back(row.make());
    return all;
}

} // namespace vldv::document
