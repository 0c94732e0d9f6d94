#include "cli/feature_output.h"

#include "base/text.h"
#include "cli/csv_text.h"
#include "output/picture_writer.h"
#include "spectra/feature_metrics.h"

#include <algorithm>
#include <stdexcept>

namespace cli {

namespace {

using json = nlohmann::ordered_json;

/// A row of cells for each feature, names above.
using table = std::vector<std::vector<std::string>>;

table make_table(const frame_features& made, std::string (*number)(double))
{
    table rows{{"left", "top", "right", "bottom", "pixels", "first x", "first y"}};
    for (const spectra::feature_metric& metric : spectra::feature_metrics()) {
        const std::string units = metric.units(made.axes);
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
        for (const double value : each.metrics) row.push_back(number(value));
    }
    return rows;
}

/// Characters of a text in UTF-8.
std::size_t width_of(const std::string& text)
{
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char each) { return (each & 0xC0) != 0x80; }));
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
    return {{"threshold", made.levels.threshold},
            {"zero_level", made.levels.zeroLevel},
            {"metrics", std::move(metrics)},
            {"features", std::move(features)},
            {"dropped", made.list.dropped}};
}

std::string features_text(const frame_features& made)
{
    const table rows = make_table(made, [](double value) { return base::general(value); });
    std::string text =
        base::formatted("    threshold %d, zero level %d, %zu features, %zu single samples dropped\n",
                        made.levels.threshold, made.levels.zeroLevel, made.list.features.size(), made.list.dropped);
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
    for (const auto& row : make_table(made, base::shortest)) text += csv_line(row);
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

} // namespace cli
