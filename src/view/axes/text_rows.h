#pragma once
#include "vldv_api.h"

#include <functional>
#include <string>
#include <string_view>

namespace vldv::view {

/// A text whose rows are as wide as there is room: a row that does not fit goes on in another one behind one of its
/// tabs. Rows end in "\n" here, but for the last one.
VLDV_INTERNAL_API std::wstring in_rows(std::wstring_view text, const std::function<bool(std::wstring_view row)>& fits);

/// Rows of text in the margin below a chart, pixels.
struct rows_below {
    int wanted = 0; ///< from the chart to the first of them
    int margin = 0; ///< below the chart
    int row = 0;    ///< height of one
    int count = 1;

    /// From the chart to the first row: they move up towards the numbers of the axis where the margin has no room for
    /// all of them.
    int space() const noexcept;
};

} // namespace vldv::view
