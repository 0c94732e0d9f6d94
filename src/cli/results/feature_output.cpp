#include "cli/results/feature_output.h"

#include "base/streams/axis_units.h"
#include "base/text.h"
#include "base/text/decimals.h"
#include "base/units.h"
#include "output/csv_text.h"
#include "output/picture_writer.h"
#include "spectra/figures/features/feature_metrics.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string_view>

namespace vldv::cli {

namespace {

using json = nlohmann::ordered_json;

/// A row of cells for each feature, names above.
using table = std::vector<std::vector<std::string>>;

/// The longest outline, and how far the highest feature rises, wherever the axis starts.
struct feature_extent {
    double outline = 0.0, rise = 0.0;
};
feature_extent extent_of(const frame_features& made)
{
    feature_extent out;
    for (const Feature& each : made.list.features) {
        out.outline = std::max(out.outline, each.metrics[spectra::outlineMetric]);
        out.rise = std::max(out.rise, std::fabs(each.metrics[spectra::heightMetric] - made.axes.z.start));
    }
    return out;
}

/// The axes with the units in which these read well.
spectra::feature_axes readable_axes(const frame_features& made)
{
    const feature_extent extent = extent_of(made);
    spectra::feature_axes shown = made.axes;
    shown.x.set_units(readable_units(made.axes.x.get_units(), extent.outline));
    shown.z.set_units(readable_units(made.axes.z.get_units(), extent.rise));
    return shown;
}

/// As many digits as tell a thousandth of the highest rise.
int digits_of_heights(const frame_features& made)
{
    constexpr double told = 1e-3;
    const double rise = extent_of(made).rise;
    return base::telling_digits(std::fabs(made.axes.z.start) + rise, told * rise);
}

/// A metric in other units; those of a volume are an area and a height, "nm^2xnm".
double converted(double value, const std::string& from, const std::string& to)
{
    constexpr std::string_view volumeMark = "^2x";
    const std::size_t fromMark = from.find(volumeMark), toMark = to.find(volumeMark);
    if (fromMark == std::string::npos || toMark == std::string::npos)
        return convert_size(from.c_str(), to.c_str(), value);
    // "nm^2" ends in front of the "x" of the mark and the unit of the height begins behind it.
    const std::size_t height = volumeMark.size(), area = height - 1;
    value = convert_size(from.substr(0, fromMark + area).c_str(), to.substr(0, toMark + area).c_str(), value);
    return convert_size(from.c_str() + fromMark + height, to.c_str() + toMark + height, value);
}

/// \param number  the text of a metric's value
template <class Number>
table make_table(const frame_features& made, const spectra::feature_axes& shown, const Number& number)
{
    table rows{{"left", "top", "right", "bottom", "pixels", "first x", "first y"}};
    for (const spectra::feature_metric& metric : spectra::feature_metrics()) {
        const std::string units = metric.units(shown);
        rows[0].push_back(metric.name + (units.empty() ? "" : ", " + units));
    }
    for (const Feature& each : made.list.features) {
        const CPoint first = each.pixels.front();
        std::vector<std::string>& row = rows.emplace_back();
        for (const int side : {each.bounds.left, each.bounds.top, each.bounds.right, each.bounds.bottom})
            row.push_back(std::to_string(side));
        row.push_back(std::to_string(each.pixels.size()));
        row.push_back(std::to_string(first.x));
        row.push_back(std::to_string(first.y));
        for (std::size_t i = 0; i < each.metrics.size(); ++i) {
            const spectra::feature_metric& metric = spectra::feature_metrics()[i];
            row.push_back(number(i, converted(each.metrics[i], metric.units(made.axes), metric.units(shown))));
        }
    }
    return rows;
}

/// Characters of a text in UTF-8.
std::size_t width_of(const std::string& text)
{
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char each) { return (each & 0xC0) != 0x80; }));
}

std::string counted(std::size_t count, const char* thing)
{
    return std::to_string(count) + ' ' + thing + (count == 1 ? "" : "s");
}

} // namespace

json features_json(const frame_features& made)
{
    json metrics = json::array(), features = json::array();
    for (const spectra::feature_metric& metric : spectra::feature_metrics())
        metrics.push_back({{"name", metric.name}, {"units", metric.units(made.axes)}});
    for (const Feature& each : made.list.features) {
        const CPoint first = each.pixels.front();
        features.push_back(
            {{"bounds", json::array({each.bounds.left, each.bounds.top, each.bounds.right, each.bounds.bottom})},
             {"pixels", each.pixels.size()},
             {"first", json::array({first.x, first.y})},
             {"metrics", each.metrics}});
    }
    json out = {{"threshold", made.levels.threshold},
                {"zero_level", made.levels.zeroLevel},
                {"metrics", std::move(metrics)},
                {"features", std::move(features)},
                {"dropped", made.list.dropped}};
    add_voids(out, made.voids);
    return out;
}

std::string features_text(const frame_features& made)
{
    const int digits = digits_of_heights(made);
    const auto isHeight = [](std::size_t metric) {
        return metric == spectra::heightMetric || metric == spectra::meanHeightMetric;
    };
    const table rows = make_table(made, readable_axes(made), [&](std::size_t metric, double value) {
        return isHeight(metric) ? base::general(value, digits) : base::general(value);
    });
    std::string text =
        base::formatted("    threshold %d, zero level %d, ", made.levels.threshold, made.levels.zeroLevel) +
        counted(made.list.features.size(), "feature") + ", " + counted(made.list.dropped, "single sample") +
        " dropped\n" + voids_text(made.voids);
    if (made.list.features.empty()) return text;
    std::vector<std::size_t> widths(rows[0].size());
    for (const auto& row : rows)
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], width_of(row[i]));
    for (const auto& row : rows) {
        text += "  ";
        for (std::size_t i = 0; i < row.size(); ++i)
            text += std::string(widths[i] - width_of(row[i]) + 2, ' ') + row[i];
        text += '\n';
    }
    return text;
}

std::string features_csv(const frame_features& made)
{
    std::string text;
    for (const auto& row : make_table(made, made.axes, [](std::size_t, double value) { return base::shortest(value); }))
        text += output::csv_line(row);
    return text;
}

std::vector<std::byte> features_png(const frame_features& made)
{
    const CRect& working = made.working;
    constexpr std::size_t bytesPerPixel = 3;
    const std::size_t stride = static_cast<std::size_t>(working.Width()) * bytesPerPixel;
    std::vector<std::byte> pixels(stride * static_cast<std::size_t>(working.Height()));
    for (const Feature& each : made.list.features)
        each.pixels.forEachRun([&](int y, int left, int right) {
            std::byte* const row = pixels.data() + stride * static_cast<std::size_t>(y - working.top);
            std::fill(row + bytesPerPixel * static_cast<std::size_t>(left - working.left),
                      row + bytesPerPixel * static_cast<std::size_t>(right - working.left), std::byte{255});
        });
    // Row 0 is the lowest of the surface and the last of the picture.
    const output::pixel_view view{pixels.data() + stride * static_cast<std::size_t>(working.Height() - 1),
                                  working.Width(), working.Height(), -static_cast<std::ptrdiff_t>(stride),
                                  static_cast<int>(bytesPerPixel)};
    auto encoded = output::encode_picture(output::picture_format::png, view);
    if (!encoded) throw std::runtime_error(encoded.error().reason);
    return std::move(*encoded);
}

} // namespace vldv::cli
