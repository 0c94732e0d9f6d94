#pragma once
#include "base/SPMVar.h"
#include "view/frame/option_rows.h"

#include <span>
#include <vector>

class SPMDataStream;

namespace vldv::curves {

/// The options of a section view behind those of its base, with a choice among the axes of the curves' dimension and of
/// the values. \param stream  the image, or null: then there is nothing to choose from
std::vector<SPMVar> section_options(const SPMDataStream* stream, unsigned dimension);

/// Makes the margins of the base follow those that the user sets.
void tie_section_margins(SPMVar* options, unsigned count);

} // namespace vldv::curves
