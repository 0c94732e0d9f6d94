#include "surface/figures/measure/step_search.h"

#include "base/streams/rounding.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vldv::surface {

namespace {

/// The slope at each sample of a row: twice the step per column, upwards or downwards. Beyond an end the row goes on
/// with its last sample.
void slopes_of(std::span<const std::int16_t> row, steps_direction direction, std::span<std::int32_t> slopes)
{
    const std::int32_t sign = direction == steps_direction::rightToLeft ? 1 : -1;
    const std::size_t last = row.size() - 1;
    slopes[0] = sign * (row[std::min<std::size_t>(1, last)] - row[0]);
    slopes[last] = sign * (row[last] - row[last == 0 ? 0 : last - 1]);
    for (std::size_t x = 1; x < last; ++x) slopes[x] = sign * (row[x + 1] - row[x - 1]);
}

constexpr std::int32_t noSlope = std::numeric_limits<std::int32_t>::min(); ///< a sample that it needs was not measured

/// The places of slopes in each row.
class slope_peaks {
public:
    slope_peaks(const sample_frame& frame_, const step_settings& settings_)
        : frame(frame_), settings(settings_), slopes(static_cast<std::size_t>(frame_.width))
    {
        // Slopes are worked out twice, for the threshold and for the places, so that no frame of them has to be kept.
        const std::int32_t floor = threshold();
        rows.resize(static_cast<std::size_t>(frame.height));
        for (int y = 0; y < frame.height; ++y) {
            takeSlopes(y);
            find_first_maxima(slopes, floor, settings.leftBorder, rows[static_cast<std::size_t>(y)]);
        }
    }

    const std::vector<std::int32_t>& row(int y) const { return rows[static_cast<std::size_t>(y)]; }
    /// The place nearest to a column and no farther than the border, to the left of two as near; -1: there is none.
    std::int32_t near(int y, std::int32_t column) const
    {
        const std::vector<std::int32_t>& all = row(y);
        const auto behind = std::lower_bound(all.begin(), all.end(), column);
        std::int32_t nearest = -1, distance = settings.leftBorder;
        if (behind != all.end() && *behind - column <= distance) {
            nearest = *behind;
            distance = nearest - column;
        }
        if (behind != all.begin() && column - behind[-1] <= distance) nearest = behind[-1];
        return nearest;
    }

private:
    void takeSlopes(int y)
    {
        const auto width = static_cast<std::size_t>(frame.width);
        const std::size_t first = static_cast<std::size_t>(y) * width;
        slopes_of(frame.samples.subspan(first, width), settings.direction, slopes);
        for (const auto [at, count] : primitives::runs_within(first, first + width, frame.unmeasured)) {
            const std::size_t from = std::max(at - first, std::size_t{1}) - 1,
                              end = std::min(at - first + count + 1, width);
            std::fill(slopes.begin() + static_cast<std::ptrdiff_t>(from),
                      slopes.begin() + static_cast<std::ptrdiff_t>(end), noSlope);
        }
    }
    /// The whole number that slopes have to exceed.
    std::int32_t threshold()
    {
        std::int64_t sum = 0, squares = 0, known = 0;
        for (int y = 0; y < frame.height; ++y) {
            takeSlopes(y);
            for (const std::int64_t slope : slopes) {
                if (slope == noSlope) continue;
                sum += slope;
                squares += slope * slope;
                ++known;
            }
        }
        const double count = static_cast<double>(std::max<std::int64_t>(known, 1));
        const double mean = static_cast<double>(sum) / count;
        const double deviation = std::sqrt(std::max(static_cast<double>(squares) / count - mean * mean, 0.0));
        const auto limit = static_cast<float>(deviation * settings.threshold + mean);
        constexpr float beyond = 1 << 20; // no slope is as steep
        // A whole number exceeds the limit exactly when it exceeds the floor of it.
        return static_cast<std::int32_t>(std::floor(std::clamp(limit, -beyond, beyond)));
    }

    const sample_frame& frame;
    const step_settings& settings;
    std::vector<std::int32_t> slopes;
    std::vector<std::vector<std::int32_t>> rows;
};

class step_finder {
public:
    step_finder(const sample_frame& frame_, const step_settings& settings_)
        : frame(frame_),
          settings(settings_),
          peaks(frame, settings),
          lastRow(frame.height - settings.endRow - 1),
          lastStart(static_cast<int>(
              std::min<std::int64_t>(std::int64_t{settings.startRow} + settings.searchRows - 1, lastRow)))
    {
    }

    std::deque<surface_step> run() const
    {
        std::deque<surface_step> steps;
        for (const std::int32_t column : startColumns())
            if (surface_step step = follow(begin(column)); isLong(step)) steps.push_back(bridged(step));
        return steps;
    }

private:
    /// Columns around which the places in the first rows gather.
    std::vector<std::int32_t> startColumns() const
    {
        const auto width = static_cast<std::size_t>(frame.width);
        std::vector<std::int32_t> counts(width + 2), sums(width), columns; // a column more on either side
        for (int y = settings.startRow; y <= lastStart; ++y)
            for (const std::int32_t column : peaks.row(y)) ++counts[static_cast<std::size_t>(column) + 1];
        // A step that runs a little askew has its places in neighbouring columns, which count together.
        for (std::size_t c = 0; c < width; ++c) sums[c] = counts[c] + counts[c + 1] + counts[c + 2];
        find_first_maxima(sums, 0, settings.leftBorder, columns);
        return columns;
    }
    surface_step begin(std::int32_t column) const
    {
        for (int y = settings.startRow; y <= lastStart; ++y)
            if (const std::int32_t at = peaks.near(y, column); at >= 0) return {{y, at}};
        return {};
    }
    surface_step follow(surface_step step) const
    {
        if (step.empty()) return step;
        for (int y = step.back().row + 1; y <= lastRow; ++y) {
            if (const std::int32_t at = peaks.near(y, step.back().column); at >= 0)
                step.push_back({y, at});
            else if (y - step.back().row > settings.gap)
                break;
        }
        return step;
    }
    bool isLong(const surface_step& step) const
    {
        return !step.empty() && step.back().row - step.front().row >= settings.searchRows;
    }
    static surface_step bridged(const surface_step& step)
    {
        surface_step whole{step.front()};
        for (std::size_t i = 1; i < step.size(); ++i) {
            const auto [fromRow, fromColumn] = step[i - 1];
            const std::int32_t rows = step[i].row - fromRow, columns = step[i].column - fromColumn;
            for (std::int32_t k = 1; k < rows; ++k)
                whole.push_back({fromRow + k, fromColumn + base::nearest_int(static_cast<double>(columns) * k / rows)});
            whole.push_back(step[i]);
        }
        return whole;
    }

    const sample_frame& frame;
    const step_settings& settings;
    slope_peaks peaks;
    int lastRow, lastStart;
};

} // namespace

step_settings step_settings::proposed(int width, int height) noexcept
{
    step_settings made;
    made.leftBorder = std::min(base::nearest_int(width * 0.03125), std::max(width - 1, 0) / 2);
    made.searchRows = std::max(base::nearest_int(height / 13.0), 1);
    made.gap = std::max(base::nearest_int(height / 100.0), 1);
    return made;
}

void find_first_maxima(std::span<const std::int32_t> values, std::int32_t floor, int reach,
                       std::vector<std::int32_t>& columns)
{
    const auto count = static_cast<std::int32_t>(values.size());
    const std::int32_t* const at = values.data();
    const auto isMaximum = [=](std::int32_t c) {
        // From the middle outwards: what is no maximum mostly has something higher close by.
        for (std::int32_t k = 1; k <= reach; ++k)
            if ((c - k >= 0 && at[c - k] >= at[c]) || (c + k < count && at[c + k] > at[c])) return false;
        return true;
    };
    columns.clear();
    for (std::int32_t c = 0; c < count; ++c)
        if (reach <= 0 || (at[c] > floor && isMaximum(c))) columns.push_back(c);
}

std::deque<surface_step> find_steps(const sample_frame& frame, const step_settings& settings)
{
    if (frame.isEmpty()) return {};
    step_settings sound = settings;
    sound.leftBorder = std::clamp(settings.leftBorder, 0, frame.width);
    sound.searchRows = std::max(settings.searchRows, 1);
    sound.gap = std::max(settings.gap, 1);
    sound.startRow = std::max(settings.startRow, 0);
    sound.endRow = std::clamp(settings.endRow, 0, frame.height);
    return step_finder(frame, sound).run();
}

} // namespace vldv::surface
