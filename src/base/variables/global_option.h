#pragma once
#include "base/SPMVar.h"
#include "vldv_api.h"

namespace vldv::base {

/// A variable of "global_options"; type 0 when there is none of that name: programs without windows declare none.
VLDV_INTERNAL_API SPMVar global_option(const char* name);

} // namespace vldv::base
