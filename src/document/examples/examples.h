#pragma once
#include "formats/recording.h"
#include "vldv_api.h"

#include <span>
#include <string>
#include <vector>

namespace vldv::document {

/// A bundled document of synthetic data, for a first look and for tests that need known numbers.
struct example {
    std::string fileName; ///< "atomic-steps.spm"
    std::string title;
    formats::recording content; ///< its strings state the model and its parameters
};

/// An example before it is made.
struct example_row {
    const char *fileName, *title;
    unsigned dimensions; ///< of the image that is looked at first
    example (*make)();
};
/// All examples in the order in which they are shown.
VLDV_INTERNAL_API std::span<const example_row> example_table() noexcept;

/// All examples in the order in which they are shown. The same numbers on every call.
VLDV_INTERNAL_API std::vector<example> make_examples();

// One by one.

/// Terraces of a gold (111) face, one layer apart, under tilt and scan-line noise.
example make_atomic_steps();
/// A hexagonal lattice of atoms, under tilt and noise.
example make_atomic_lattice();
/// Rounded grains that do not touch, on a tilted plane.
example make_grains();
/// A grating scanned forth and back: height and deflection, shifted by the scanner's hysteresis.
example make_two_directions();
/// A profile across trenches.
example make_section();
/// Approach and retract of a probe with adhesion.
example make_force_curve();
/// Force curves on a grid over particles in a softer matrix, and the height under them.
example make_force_volume();

} // namespace vldv::document
