#pragma once
#include "base/SPMVarList.h"
#include "vldv_api.h"

#include <string>

namespace vldv::base {

/// The label of a variable with the group that the dots of its name put it into, so that a row reads by itself:
/// "section.line.color(Color)" is "Section line: Color". A part of the name that is a variable of the list too gives
/// its label, others their words; one whose words the label holds already, and a heading of the list, is left out, and
/// so is a group that all rows are in.
VLDV_INTERNAL_API std::string grouped_label(const SPMVarList& list, const SPMVar& variable);

} // namespace vldv::base
