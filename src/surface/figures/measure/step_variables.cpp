#include "surface/figures/measure/step_variables.h"

#include "base/text.h"

#include <algorithm>
#include <initializer_list>

namespace vldv::surface {

namespace {

constexpr const char *invert = "stepsearch.invert", *threshold = "stepsearch.threshold",
                     *leftBorder = "stepsearch.leftBorder", *searchRows = "stepsearch.search_rows",
                     *gap = "stepsearch.gap";

SPMVar declared(const std::string& declaration, const std::string& value)
{
    SPMVar made;
    made.Init(declaration);
    made.from_string(value.c_str());
    return made;
}

} // namespace

std::vector<SPMVar> step_variables(const step_settings& settings, CSize image)
{
    const int width = image.cx, height = image.cy;
    std::vector<SPMVar> made{
        declared("stepsearch.invert(Steps direction),enum,Left to Right,Right to Left,,", ""),
        declared("stepsearch.threshold(Threshold),double,0", base::shortest(settings.threshold)),
        declared(base::formatted("stepsearch.leftBorder(Slope width),int,0,%d,##*2+1", (width - 1) / 2),
                 std::to_string(settings.leftBorder)),
        declared(base::formatted("stepsearch.search_rows(Start rows),int,1,%d,,"
                                 "min(##,%d-#stepsearch.end_row-#stepsearch.start_row)",
                                 height, height),
                 std::to_string(settings.searchRows)),
        declared("stepsearch.gap(Max. gap height),int,1", std::to_string(settings.gap)),
        declared(base::formatted("stepsearch.start_row(Start row),int,0,%d,##+1,min(##,%d-#stepsearch.end_row)",
                                 height - 1, height),
                 std::to_string(settings.startRow)),
        declared(base::formatted("stepsearch.end_row(End row),int,0,%d,%d-##", height - 1, height),
                 std::to_string(settings.endRow)),
    };
    made.front().set_enum_val(static_cast<int>(settings.direction));
    return made;
}

std::optional<step_settings> settings_of(const SPMVarList& list)
{
    const auto isThere = [&list](const char* name) { return list.get_var_i(name) != unsigned(-1); };
    const std::initializer_list<const char*> names{invert, threshold,    leftBorder, searchRows,
                                                   gap,    stepStartRow, stepEndRow};
    if (!std::ranges::all_of(names, isThere)) return std::nullopt;
    const auto number = [&list](const char* name) { return static_cast<int>(list[name]); };
    step_settings made;
    made.direction = number(invert) == 0 ? steps_direction::leftToRight : steps_direction::rightToLeft;
    made.threshold = static_cast<double>(list[threshold]);
    made.leftBorder = number(leftBorder);
    made.searchRows = number(searchRows);
    made.gap = number(gap);
    made.startRow = number(stepStartRow);
    made.endRow = number(stepEndRow);
    return made;
}

std::vector<std::pair<std::string, std::string>> shown_values(const SPMVarList& list)
{
    std::vector<std::pair<std::string, std::string>> shown;
    for (const SPMVar& each : list.all())
        shown.emplace_back(each.get_name(), list.evaluate_var(each).as_string().c_str());
    return shown;
}

} // namespace vldv::surface
