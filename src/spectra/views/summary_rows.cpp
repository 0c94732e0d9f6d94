#include "spectra/views/summary_rows.h"

#include "base/text.h"
#include "spectra/figures/features/feature_table.h"

#include <utility>

namespace vldv::spectra {

std::vector<std::vector<std::wstring>> summary_rows(std::span<const value_summary> columns)
{
    constexpr std::pair<const wchar_t*, double value_summary::*> lines[] = {{L"Mean", &value_summary::mean},
                                                                            {L"Std. dev.", &value_summary::deviation},
                                                                            {L"Sum", &value_summary::sum},
                                                                            {L"Lowest", &value_summary::lowest},
                                                                            {L"Highest", &value_summary::highest}};
    std::vector<std::vector<std::wstring>> rows{{L"Count"}};
    for (const value_summary& each : columns) rows.front().push_back(std::to_wstring(each.count));
    for (const auto& [name, member] : lines) {
        std::vector<std::wstring>& line = rows.emplace_back(1, name);
        for (const value_summary& each : columns) line.push_back(base::widen(metric_cell(each.*member)));
    }
    return rows;
}

} // namespace vldv::spectra
