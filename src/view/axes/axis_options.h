#pragma once
#include "base/SPMVar.h"
#include "base/VLAxis.h"

/// Options that views with axes around them share.
namespace vldv::view {

/// A choice among the axes of a container: items "x0(nm)", "x1(V)" …, the first chosen.
SPMVar axis_choice(const char* declaration, char letter, const VLAxesContainer& axes);

/// Makes the four margins follow the options that the user sets for them: 0 in the compact view, and wider where
/// scale, panels and file information stand.
void tie_margins(SPMVar* options, unsigned count);
/// Makes them follow those options as they are.
void tie_plain_margins(SPMVar* options, unsigned count);

} // namespace vldv::view
