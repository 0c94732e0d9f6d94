// vldv force: what force curves say of contact and adhesion.
#include "base/text.h"
#include "cli/commands.h"
#include "cli/curve_source.h"
#include "cli/file_reports.h"
#include "cli/force_map_output.h"
#include "cli/number_limits.h"
#include "cli/session.h"
#include "curves/force_curve.h"
#include "curves/force_report.h"
#include "curves/physical.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <iostream>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

using json = nlohmann::ordered_json;

struct force_options : curve_options {
    double zeroThreshold = 1.0, slantThreshold = 1.0;
    int window = 100;
    std::string map;
};

/// One force curve of an image.
struct force_curve {
    unsigned sub = 0;
    int column = -1, row = -1; ///< of a volume's grid
    std::span<const std::int16_t> samples;
};

/// The force curves of one image: those of a record, or of the grid of a volume.
struct force_image {
    unsigned image = 0;
    SPMDataStream converted; ///< when the samples are not 16-bit
    VLAxis positions, values;
    std::vector<force_curve> curves;
};

force_image curves_of(const CStorageDoc& document, unsigned image, int wantedSub)
{
    force_image out;
    out.image = image;
    const SPMDataStream* stream = &document.getImage(image);
    if (stream->array_type() != SPM_ARRAY_INT16) {
        out.converted = *stream;
        out.converted.convert_stream(SPM_ARRAY_INT16);
        stream = &out.converted;
        if (stream->array_type() != SPM_ARRAY_INT16)
            throw std::runtime_error(base::formatted("the samples of image %u have no type", image));
    }
    out.positions = document.getAxis(image, 0, 0);
    out.values = stream->values.get_axis(0);
    const curves::grid grid(*stream);
    const auto length = static_cast<std::size_t>(grid.lengths[0]);
    const bool isVolume = grid.dimensions() == 3;
    const int columns = isVolume ? static_cast<int>(grid.lengths[1]) : 1;
    const auto* samples = static_cast<const std::int16_t*>(stream->array_data());
    for (unsigned sub = 0; sub < grid.subImages; ++sub)
        for (int i = 0; i < static_cast<int>(grid.subLength / grid.lengths[0]); ++i, samples += length)
            if (wantedSub < 0 || sub == static_cast<unsigned>(wantedSub))
                out.curves.push_back(
                    {sub, isVolume ? i % columns : -1, isVolume ? i / columns : -1, {samples, length}});
    return out;
}

std::vector<force_image> images_of(const CStorageDoc& document, const force_options& options)
{
    std::vector<force_image> found;
    for (unsigned image = 0; image < document.getImagesNumber(); ++image) {
        if (options.image >= 0 && image != static_cast<unsigned>(options.image)) continue;
        const unsigned dimensions = document.getImage(image).get_dimensions_number();
        if (!document.isImageOk(image) || (dimensions != 1 && dimensions != 3)) continue;
        found.push_back(curves_of(document, image, options.sub));
        if (found.back().curves.empty()) found.pop_back();
    }
    if (!found.empty()) return found;
    if (options.image >= 0 || options.sub >= 0)
        throw nothing_to_treat("there are no curves in the image and sub-image that were asked for");
    throw nothing_to_treat("there are no curves");
}

struct analysis {
    force_curve_stats stats;
    curves::force_figures figures;
    std::vector<double> areas;
};

analysis analyse(const force_curve& curve, const force_image& image, const force_options& options)
{
    analysis out;
    const std::vector<double> y = curves::physical_values(curve.samples, image.values);
    const int n = static_cast<int>(y.size());
    get_force_curve_stats(y.data(), n, options.zeroThreshold, options.slantThreshold, out.stats);
    find_loc_fmin(y.data(), n, out.stats, options.window);
    get_force_curve_valleys(y.data(), n, out.stats);
    const double step = image.positions.scale;
    for (std::uint32_t k = 0; k < out.stats.valley_count; ++k)
        out.areas.push_back(curves::valley_area(curve.samples.data(), {image.values.scale, image.values.start}, step,
                                                out.stats, out.stats.valleys[k]));
    out.figures = {curve.sub, curves::force_slope(out.stats, step), step, curves::force_minimum(y.data(), out.stats)};
    return out;
}

json curve_json(const force_curve& curve, const analysis& found)
{
    const force_curve_stats& stats = found.stats;
    json out = {{"subimage", curve.sub}};
    if (curve.column >= 0) out.update({{"x", curve.column}, {"y", curve.row}});
    json valleys = json::array();
    for (std::uint32_t k = 0; k < stats.valley_count; ++k)
        valleys.push_back({stats.valleys[k].first, stats.valleys[k].second});
    const bool hasSlope = stats.hasSlant() && std::isfinite(found.figures.slope);
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
                {"dfdz", hasSlope ? json(found.figures.slope) : json()},
                {"angle", hasSlope ? json(curves::slope_angle(found.figures.slope)) : json()},
                {"fmin", found.figures.minimum}});
    return out;
}

json image_json(const force_image& image, const force_options& options, const std::wstring& path)
{
    json lines = json::array();
    for (const force_curve& each : image.curves) lines.push_back(curve_json(each, analyse(each, image, options)));
    return {{"path", base::narrow(path)}, {"image", image.image}, {"curves", lines}};
}

std::string image_text(const force_image& image, const force_options& options)
{
    std::string text;
    for (const force_curve& each : image.curves) {
        if (text.empty()) {
            const std::string header = curves::force_header(image.values.get_units());
            text = std::string(each.column >= 0 ? "X\tY\t" : "") + header.substr(0, header.size() - 2) + '\n';
        }
        const analysis found = analyse(each, image, options);
        if (each.column >= 0) text += std::to_string(each.column) + '\t' + std::to_string(each.row) + '\t';
        text += curves::force_row(found.figures, found.stats) + '\n';
    }
    return text;
}

int run(const force_options& options)
{
    session call;
    call.setFiles(options.files);
    std::optional<force_map_output> maps;
    if (!options.map.empty()) maps.emplace(call, options.map);
    return report_entries(call, options.asJson, [&](CStorageDoc& document, const std::wstring& path, json& entries) {
        const std::vector<force_image> images = images_of(document, options);
        const bool isOneOfMany = images.size() > 1 || call.files().size() > 1;
        for (const force_image& each : images) {
            if (options.asJson) {
                entries.push_back(image_json(each, options, path));
            } else if (!maps) {
                if (isOneOfMany) std::cout << heading(document, path, each.image);
                std::cout << image_text(each, options);
            }
        }
        if (!maps) return;
        const force_map_output::written made = maps->write(document, path, options.image, options.sub);
        if (!options.asJson)
            std::cout << made.path << '\n';
        else
            entries.back().update({{"map", made.path}, {"maps", made.titles}});
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
        ->check(whole_number(0))
        ->capture_default_str();
    command->add_option("--map", options->map, "Write volumes with their rigidity and adhesion here: a file or folder");
    add_curve_options(*command, *options, false);
    command->callback([options, &status] { status = run(*options); });
}

} // namespace cli
