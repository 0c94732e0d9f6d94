#include "curves/figures/pairs/pair_text.h"

#include "base/text.h"
#include "base/units.h"
#include "curves/figures/force/force_analysis.h"
#include "curves/figures/force/force_curve.h"
#include "curves/figures/pairs/pair_force.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

#include <algorithm>

namespace vldv::curves {

namespace {

std::string position_text(unsigned id, double value, const char* units)
{
    const char* const best = default_units(units, &value);
    return base::formatted(string_resource(id), value + 0.0, best); // 0 has no sign
}

std::string value_text(unsigned id, double value, const char* units)
{
    const char* const best = default_units_z(units, &value);
    return base::formatted(string_resource(id), value + 0.0, best);
}

std::string cell(const pair_series& series, std::size_t row, const VLAxis& x, const VLAxis& y)
{
    if (row >= series.size() || !series.isMeasured(row)) return "\t";
    return base::formatted("%.12g\t%.12g", x.at(series.x[row]), y.at(series.y[row]));
}

} // namespace

std::string pair_marks_text(const pair_mark_set& marks, pair_marks_mode mode, const pair_series& series,
                            const VLAxis& x, const VLAxis& y)
{
    std::vector<std::pair<double, double>> at;
    for (const int number : pair_mark_set::shownIn(mode)) {
        const auto sample = marks[number].sample;
        if (!sample || *sample >= series.size()) return {};
        at.emplace_back(x.at(series.x[*sample]), y.at(series.y[*sample]));
    }
    if (mode == pair_marks_mode::verticalLines)
        return position_text(texts::differenceX, at[1].first - at[0].first, x.get_units()) + '\t' +
               value_text(texts::differenceY, at[1].second - at[0].second, y.get_units());
    std::string text;
    for (const auto& [position, value] : at)
        text += (text.empty() ? "" : "\t") + position_text(texts::placeX, position, x.get_units()) + '\t' +
                value_text(texts::placeY, value, y.get_units());
    return text;
}

std::string pair_force_text(const pair_series& series, const VLAxis& x, const VLAxis& y, const force_curve_stats& stats)
{
    std::string text;
    if (stats.hasSlant())
        text += base::formatted("\t%s: %G %s", slope_name(x.get_units()), force_slope(stats, 1.0),
                                slope_units(y.get_units(), x).c_str());
    if (stats.hasZero() && !series.isEmpty()) {
        double lowest = pair_minimum(series, x, y, stats);
        const char* const units = default_units_z(y.get_units(), &lowest);
        text += base::formatted("\tFmin: %G %s", lowest + 0.0, units);
    }
    return text;
}

std::string pair_table(const pair_source& source, const VLAxis& x, const VLAxis& y, const std::string& xName,
                       const std::string& yName)
{
    std::string text;
    std::vector<pair_series> curves;
    std::size_t rows = 0;
    for (unsigned k = 0; k < source.curves(); ++k) {
        curves.push_back(source.curve(k));
        rows = std::max(rows, curves.back().size());
        text += base::formatted("%sSubimage%u,X data,%s\tSubimage%u,Y data,%s", k == 0 ? "" : "\t", k + 1,
                                xName.c_str(), k + 1, yName.c_str());
    }
    text += "\r\n";
    for (std::size_t row = 0; row < rows; ++row) {
        for (std::size_t k = 0; k < curves.size(); ++k) text += (k == 0 ? "" : "\t") + cell(curves[k], row, x, y);
        text += "\r\n";
    }
    return text;
}

} // namespace vldv::curves
