#pragma once
#include "vldv_api.h"

#include <functional>
#include <string>
#include <string_view>

namespace vldv::curves {

/// A text whose rows are as wide as there is room: a row that does not fit goes on in another one behind one of its
/// tabs. Rows end in "\n" here, but for the last one.
VLDV_INTERNAL_API std::wstring in_rows(std::wstring_view text, const std::function<bool(std::wstring_view row)>& fits);

} // namespace vldv::curves
