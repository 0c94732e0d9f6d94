#pragma once
#include "base/SPMVarList.h"
#include "platform/draw/geometry.h"
#include "surface/figures/measure/step_search.h"
#include "vldv_api.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vldv::surface {

inline constexpr const char *stepStartRow = "stepsearch.start_row", *stepEndRow = "stepsearch.end_row";

/// The settings as variables that people edit, with limits for an image of this size, in the order of the dialog.
VLDV_INTERNAL_API std::vector<SPMVar> step_variables(const step_settings& settings, CSize image);
/// Nothing while one of the variables is missing.
VLDV_INTERNAL_API std::optional<step_settings> settings_of(const SPMVarList& list);
/// Name and value of each variable, the value as people are shown it.
VLDV_INTERNAL_API std::vector<std::pair<std::string, std::string>> shown_values(const SPMVarList& list);

} // namespace vldv::surface
