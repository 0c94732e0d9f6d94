#include "curves/figures/step_place.h"

#include "base/streams/rounding.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace vldv::curves {

namespace {

constexpr std::string_view lineUnits = "line";

/// The axis of the rows that counts lines, or null.
const VLAxis* line_axis(const SPMDataStream& step)
{
    if (step.get_dimensions_number() != 1) return nullptr;
    const auto& rows = step.get_dimension(0);
    for (unsigned i = 0; i < rows.get_axes_number(); ++i)
        if (rows.get_axis(i).get_units() == lineUnits) return &rows.get_axis(i);
    return nullptr;
}

} // namespace

step_places::step_places(const SPMDataStream& step, int firstLine_, bool fromLeft_, int columns_)
    : values(static_cast<const std::int16_t*>(step.array_data())),
      length(static_cast<int>(step.get_dimension(0).length)),
      firstLine(firstLine_),
      columns(columns_),
      fromLeft(fromLeft_)
{
}

std::optional<step_places> step_places::of(const SPMDataStream& step, bool fromLeft_, int columns_)
{
    const VLAxis* const lines = line_axis(step);
    if (!lines || columns_ < 1 || step.array_type() != SPM_ARRAY_INT16) return std::nullopt;
    const unsigned length = step.get_dimension(0).length;
    if (length == 0 || step.array_length() < length || length > unsigned(std::numeric_limits<int>::max()))
        return std::nullopt;
    return step_places(step, base::nearest_int(lines->start), fromLeft_, columns_);
}

int step_places::lineAt(double share) const noexcept { return firstLine + base::nearest_int((length - 1) * share); }

std::optional<unsigned> step_places::sampleOfLine(int line) const noexcept
{
    const std::int64_t sample = std::int64_t{line} - firstLine;
    if (sample < 0 || sample >= length) return std::nullopt;
    return static_cast<unsigned>(sample);
}

std::optional<double> step_places::shareOfLine(int line) const noexcept
{
    const std::optional<unsigned> sample = sampleOfLine(line);
    if (!sample) return std::nullopt;
    return length == 1 ? 0.0 : *sample / (length - 1.0);
}

std::optional<double> step_places::shareAcross(int line) const noexcept
{
    const std::optional<unsigned> sample = sampleOfLine(line);
    if (!sample) return std::nullopt;
    const int column = fromLeft ? values[*sample] : columns - 1 - values[*sample];
    return columns == 1 ? 0.0 : std::clamp(column / (columns - 1.0), 0.0, 1.0);
}

std::int16_t step_places::valueAcross(double share) const noexcept
{
    const int column = base::nearest_int((columns - 1) * share);
    const int value = fromLeft ? column : columns - 1 - column;
    return static_cast<std::int16_t>(std::clamp<int>(value, 0, std::numeric_limits<std::int16_t>::max()));
}

} // namespace vldv::curves
