// vldv force: what force curves say of contact and adhesion.
#include "base/text.h"
#include "cli/choice/number_limits.h"
#include "cli/commands.h"
#include "cli/output/file_reports.h"
#include "cli/output/terminal.h"
#include "cli/results/curve_source.h"
#include "cli/results/force_map_output.h"
#include "cli/session.h"
#include "curves/figures/force/force_curve.h"
#include "curves/figures/force/force_report.h"
#include "curves/figures/force/force_source.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>

namespace vldv::cli {

namespace {

using json = nlohmann::ordered_json;

struct force_options : curve_options {
    double zeroThreshold = 1.0, slantThreshold = 1.0;
    int window = 100;
    std::string map;
    bool replaces = false;
};

/// What is analysed unless an image is asked for: forces and deflections, without them curves of no known meaning.
bool is_asked_for(const CStorageDoc& document, unsigned image, const force_options& options, bool hasForces)
{
    const unsigned dimensions = document.getImage(image).get_dimensions_number();
    if (!document.isImageOk(image) || (dimensions != 1 && dimensions != 3)) return false;
    if (options.image >= 0) return image == static_cast<unsigned>(options.image);
    if (hasForces) return curves::is_force_image(document, image);
    return !*document.getAxis(image, 0, unsigned(-1)).get_units() && !curves::is_parameter(document, image);
}

bool has_forces(const CStorageDoc& document)
{
    for (unsigned image = 0; image < document.getImagesNumber(); ++image)
        if (curves::is_force_image(document, image)) return true;
    return false;
}

std::vector<curves::force_image> images_of(const CStorageDoc& document, const force_options& options)
{
    std::vector<curves::force_image> found;
    const bool hasForces = has_forces(document);
    for (unsigned image = 0; image < document.getImagesNumber(); ++image) {
        if (!is_asked_for(document, image, options, hasForces)) continue;
        found.push_back(curves::force_curves_of(document, image));
        std::erase_if(found.back().curves, [&](const curves::placed_curve& each) {
            return options.sub >= 0 ? each.sub != static_cast<unsigned>(options.sub) : each.isHeld;
        });
        if (found.back().curves.empty()) found.pop_back();
    }
    if (!found.empty()) return found;
    if (options.image >= 0 || options.sub >= 0)
        throw nothing_to_treat("there are no curves in the image and sub-image that were asked for");
    throw nothing_to_treat("there are no curves of force or deflection; --image takes others");
}

curves::force_search search_of(const force_options& options)
{
    return {options.zeroThreshold, options.slantThreshold, options.window};
}

bool is_measured(const curves::placed_curve& curve) { return !curve.samples.raw.empty(); }

json place_json(const curves::placed_curve& curve)
{
    json out = {{"subimage", curve.sub}};
    if (curve.column >= 0) out.update({{"x", curve.column}, {"y", curve.row}});
    return out;
}

json number_or_null(const std::optional<double>& number)
{
    return number && std::isfinite(*number) ? json(*number) : json();
}

json curve_json(const curves::placed_curve& curve, const curves::force_image& image, const force_options& options)
{
    json out = place_json(curve);
    if (!is_measured(curve)) {
        out["measured"] = false;
        return out;
    }
    const curves::force_analysis found = curves::analyse_force(curve.samples, search_of(options));
    const force_curve_stats& stats = found.stats;
    json valleys = json::array();
    for (std::uint32_t k = 0; k < stats.valley_count; ++k)
        valleys.push_back({stats.valleys[k].first, stats.valleys[k].second});
    const bool isOverLength = curves::slope_name(image.x.get_units()) == std::string_view("dF/dZ");
    out.update({{"slant_a", stats.slant_a},
                {"slant_b", stats.slant_b},
                {"slant_rms", stats.slant_rms},
                {"slant_first", stats.slant_first},
                {"slant_last", stats.slant_last},
                {"zero_a", stats.zero_a},
                {"zero_b", stats.zero_b},
                {"zero_rms", stats.zero_rms},
                {"zero_first", stats.zero_first},
                {"zero_last", stats.zero_last},
                {"min_index", stats.min_index},
                {"local_minima", stats.local_minima},
                {"valley_count", stats.valley_count},
                {"valleys", valleys},
                {"areas", found.areas},
                {"slope", number_or_null(found.slope)},
                {"slope_units", curves::slope_units(image.values.get_units(), image.x)},
                {"dfdz", isOverLength ? number_or_null(found.slope) : json()},
                {"angle", found.slope ? json(curves::slope_angle(*found.slope)) : json()},
                {"fmin", number_or_null(found.minimum)},
                {"turns_back", found.way == curves::position_way::turnsBack},
                {"at_rest", found.way == curves::position_way::rests},
                {"voids", curve.voids}});
    return out;
}

json image_json(const curves::force_image& image, const force_options& options, const std::wstring& path)
{
    json lines = json::array();
    for (const curves::placed_curve& each : image.curves) lines.push_back(curve_json(each, image, options));
    return {{"path", base::narrow(path)},
            {"image", image.image},
            {"units", image.values.get_units()},
            {"x", {{"parameter", image.parameter}, {"units", image.x.get_units()}}},
            {"curves", lines}};
}

std::string row_of(const curves::placed_curve& curve, const curves::force_image& image, const force_options& options)
{
    std::string row;
    if (curve.column >= 0) row = std::to_string(curve.column) + '\t' + std::to_string(curve.row) + '\t';
    if (!is_measured(curve)) return row + std::to_string(curve.sub + 1) + "\tnot measured\n";
    const curves::force_analysis found = curves::analyse_force(curve.samples, search_of(options));
    const double step = image.parameter.empty() ? image.x.scale : 1.0;
    if (found.way != curves::position_way::travels)
        return row + std::to_string(curve.sub + 1) + "\tnot analysed: X " +
               (found.way == curves::position_way::rests ? "is at rest\n" : "goes out and back\n");
    return row + curves::force_row({curve.sub, found.slope.value_or(0.0), step, found.lowest}, found.stats) + '\n';
}

/// What the rows leave out.
std::string voids_line(const curves::force_image& image)
{
    std::size_t samples = 0, curves = 0;
    for (const curves::placed_curve& each : image.curves) {
        samples += each.voids;
        curves += each.voids != 0 ? 1 : 0;
    }
    if (samples == 0) return {};
    return base::formatted("  not measured: %zu samples of %zu of %zu curves\n", samples, curves, image.curves.size());
}

std::string image_text(const curves::force_image& image, const force_options& options)
{
    const std::string slope = curves::slope_name(image.x.get_units()) + std::string(", ") +
                              curves::slope_units(image.values.get_units(), image.x);
    const std::string header = curves::force_header(image.values.get_units(), slope);
    std::string text =
        std::string(image.curves.front().column >= 0 ? "X\tY\t" : "") + header.substr(0, header.size() - 2) + '\n';
    for (const curves::placed_curve& each : image.curves) text += row_of(each, image, options);
    return text + voids_line(image);
}

int run(const force_options& options)
{
    session call;
    call.letReplace(options.replaces);
    call.setFiles(options.files, {options.map});
    std::optional<force_map_output> maps;
    if (!options.map.empty()) maps.emplace(call, options.map);
    return report_entries(call, options.asJson, [&](CStorageDoc& document, const std::wstring& path, json& entries) {
        const std::vector<curves::force_image> images = images_of(document, options);
        const bool isOneOfMany = images.size() > 1 || call.files().size() > 1;
        for (const curves::force_image& each : images) {
            if (options.asJson) {
                entries.push_back(image_json(each, options, path));
            } else if (!maps) {
                if (isOneOfMany) std::cout << heading(document, path, each.image);
                std::cout << image_text(each, options);
            }
        }
        if (!maps) return;
        const force_map_output::written made = maps->write(document, path, options.image, options.sub);
        if (options.asJson) {
            entries.back().update({{"map", made.path}, {"maps", made.titles}, {"voids", made.voids}});
            return;
        }
        std::cout << path_line(made.path) << '\n';
        for (std::size_t i = 0; i < made.titles.size(); ++i)
            if (made.voids[i] != 0)
                std::cout << "  " << made.titles[i] << ": " << made.voids[i]
                          << (made.voids[i] == 1 ? " point" : " points") << " not measured\n";
    });
}

} // namespace

void add_force(CLI::App& app, int& status)
{
    auto options = std::make_shared<force_options>();
    CLI::App* command = app.add_subcommand("force", "Tell slope, adhesion and valleys of force curves");
    command->add_option("--zero-threshold", options->zeroThreshold, "Noise of the free stretch")
        ->check(number_at_least(0.0))
        ->capture_default_str();
    command->add_option("--slant-threshold", options->slantThreshold, "Noise of the contact")
        ->check(number_at_least(0.0))
        ->capture_default_str();
    command->add_option("--window", options->window, "Samples on either side of a local minimum")
        ->transform(whole_number(0))
        ->capture_default_str();
    CLI::Option* const map = command->add_option(
        "--map", options->map, "Write volumes with their rigidity and adhesion here: a file or folder");
    command->add_flag("--force", options->replaces, "Replace containers that hold something else")->needs(map);
    add_curve_options(*command, *options, false);
    command->callback([options, &status] { status = run(*options); });
}

} // namespace vldv::cli
