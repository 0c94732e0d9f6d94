#pragma once
#include "surface/figures/measure/statistics.h"

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace vldv::surface {

/// Whether a row's text has room.
using text_fits = std::function<bool(const std::string&)>;

/// The rows of the panel, "name: value units" each, headings with a colon behind. All heights have one unit and one
/// count of decimals: six digits of their range, or as many as let each of them fit; range and roughness at least as
/// many as show three digits of their own. Where not even the first digit of the range fits they all change to the unit
/// in which the largest of them reads well, and only range and roughness keep digits of their own. Numbers stand
/// plainly as long as they fit so, else with an exponent. What fits in no way comes out as it is.
std::vector<std::string> row_texts(std::span<const statistics_row> rows, const text_fits& fits);

} // namespace vldv::surface
