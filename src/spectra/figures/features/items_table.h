#pragma once
#include "spectra/figures/features/value_distribution.h"

#include <string>
#include <vector>

namespace vldv::spectra {

/// A number of each item, in one unit.
struct item_column {
    std::string name, units;
    std::vector<double> values;

    /// "S_px, nm^2"
    std::string heading() const { return units.empty() ? name : name + ", " + units; }
};

/// Items with their numbers. All columns are of one length.
struct items_table {
    std::vector<item_column> columns;
    std::size_t rows() const noexcept { return columns.empty() ? 0 : columns.front().values.size(); }
};

} // namespace vldv::spectra
