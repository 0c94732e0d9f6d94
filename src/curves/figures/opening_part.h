#pragma once
#include "vldv_api.h"

class SPMDataStream;

namespace vldv::curves {

/// The part of a record that a window shows first: the first one in which the probe travels, as approach and retract,
/// and not one in which it is held, as a pause before them.
VLDV_INTERNAL_API unsigned opening_part(const SPMDataStream& stream) noexcept;

} // namespace vldv::curves
