// vldv profile: the samples along a line through an image, or of a curve.
#include "cli/choice/number_limits.h"
#include "cli/commands.h"
#include "cli/results/curve_source.h"
#include "curves/figures/table_text.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

namespace vldv::cli {

namespace {

using json = nlohmann::ordered_json;

json section_json(const section& each)
{
    json lines = json::array();
    for (unsigned k = each.first; k <= each.last; ++k) {
        const auto curve = each.profile.curve(k);
        json raw = json::array();
        for (std::size_t i = 0; i < curve.size(); ++i)
            raw.push_back(each.profile.isMeasured(k, i) ? json(curve[i]) : json());
        json line = {{"subimage", k}, {"raw", std::move(raw)}};
        if (curve.empty()) line["measured"] = false;
        lines.push_back(std::move(line));
    }
    return {{"length", each.profile.length},
            {"segments", each.profile.segmentLengths},
            {"x", axis_json(each.positions)},
            {"y", axis_json(each.values)},
            {"curves", lines}};
}

std::string section_table(const CStorageDoc& document, const section& each)
{
    return curves::section_text(each.profile, each.points, document.getImage(each.image).get_dimensions_number(),
                                each.positions, each.values, each.first, each.last);
}

} // namespace

void add_profile(CLI::App& app, int& status)
{
    auto options = std::make_shared<curve_options>();
    CLI::App* command = app.add_subcommand("profile", "Print the samples along a line, or of a curve");
    add_curve_options(*command, *options, true);
    command->add_option("--width", options->width, "Take the mean of so many lines on either side; surfaces only")
        ->transform(whole_number(0, 10000))
        ->capture_default_str();
    command->callback([options, &status] {
        if (options->width != 0 && (options->points.empty() || parse_points(options->points)->front().size() != 2))
            throw CLI::ValidationError("--width", "needs --points of a surface, x,y;x,y;…");
        status = print_sections(*options, {section_json, section_table});
    });
}

} // namespace vldv::cli
