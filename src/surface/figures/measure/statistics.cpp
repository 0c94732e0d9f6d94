#include "surface/figures/measure/statistics.h"

#include "base/streams/axis_units.h"
#include "base/text.h"
#include "base/units.h"
#include "primitives/fit/partial_plane.h"
#include "primitives/fit/plane_moments.h"
#include "resources/string_ids.h"
#include "resources/strings.h"
#include "surface/figures/selection_state.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace vldv::surface {

namespace {

std::string_view without_leading_blanks(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t\r\n\v\f");
    return first == std::string_view::npos ? std::string_view{} : text.substr(first);
}

statistics_row measured_row(std::string_view item)
{
    std::size_t end = item.find('=');
    if (end == std::string_view::npos) end = item.find(':');
    if (end == std::string_view::npos) return {std::string(item), 0.0, {}};
    const std::string_view rest = item.substr(end + 1);
    std::size_t used = 0;
    const double value = base::leading_number(rest, &used).value_or(0.0);
    return {std::string(item.substr(0, end)), value, std::string(without_leading_blanks(rest.substr(used)))};
}

} // namespace

std::span<const char* const> figure_names() noexcept
{
    static constexpr const char* names[] = {"Zmax", "Zmin", "Rmax", "Rq", "Ra", "Rsk", "Rku"};
    return names;
}

std::vector<statistics_row> frame_statistics(std::span<const std::int16_t> samples, int width, const VLAxis& heights,
                                             std::span<const primitives::sample_run> unmeasured)
{
    std::vector<statistics_row> rows{{{}, 0.0, string_resource(texts::statisticsHeading)}};
    if (samples.empty() || width <= 0 || primitives::count_of(unmeasured) >= samples.size()) return rows;
    const bool isWhole = unmeasured.empty();
    const auto [range, plane] =
        isWhole ? primitives::fit_plane(samples, width) : primitives::fit_partial_plane(samples, width, unmeasured);
    const VLAxis shown = readable_axis(heights, range.minimum, range.maximum);
    const double step = shown.scale, origin = shown.start;
    const std::string units = shown.get_units();
    const primitives::raw_moments z = isWhole ? primitives::residual_moments(samples, width, plane)
                                              : primitives::partial_moments(samples, width, plane, unmeasured);
    // Heights and their range are those of the samples; the roughness is that of what is left without the best plane:
    // Rq its standard deviation, Ra its mean distance from the mean, Rsk and Rku its third and fourth moments in powers
    // of Rq.
    const double rq = std::sqrt(std::max(z.m2 - z.m1 * z.m1, 0.0));
    const double rsk = rq == 0.0 ? 0.0 : z.m3 / (rq * rq * rq), rku = rq == 0.0 ? 0.0 : z.m4 / (rq * rq * rq * rq);
    const double figures[] = {step * range.maximum + origin,
                              step * range.minimum + origin,
                              (range.maximum - range.minimum) * step,
                              rq * step,
                              z.meanDeviation * step,
                              rsk,
                              rku};
    constexpr std::size_t heightFigures = 5; // the first of them
    for (std::size_t i = 0; i < std::size(figures); ++i) {
        const bool isHeight = i < heightFigures;
        rows.push_back({figure_names()[i], figures[i], isHeight ? units : std::string(), isHeight});
    }
    return rows;
}

std::vector<statistics_row> unmeasured_rows(std::size_t leftOut, std::size_t counted)
{
    std::vector<statistics_row> rows;
    if (leftOut) rows.push_back({"Not measured", static_cast<double>(leftOut), {}});
    if (counted) rows.push_back({"Not measured, counted", static_cast<double>(counted), {}});
    return rows;
}

statistics_row reading_well(statistics_row row)
{
    const std::string units = readable_units(row.units.c_str(), row.value);
    row.value = convert_size(row.units.c_str(), units.c_str(), row.value);
    row.units = units;
    return row;
}

std::vector<statistics_row> measure_rows(const measure_text& measure, int compactLength)
{
    std::vector<statistics_row> rows;
    if (!measure.isVisible || static_cast<std::int64_t>(measure.text.size()) < compactLength) return rows;
    rows.push_back({{}, 0.0, string_resource(texts::measureHeading)});
    const std::string text = base::narrow(measure.text);
    for (std::string_view item : base::split(text, ';')) {
        item = without_leading_blanks(item);
        if (!item.empty()) rows.push_back(measured_row(item));
    }
    return rows;
}

} // namespace vldv::surface
