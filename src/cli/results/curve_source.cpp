#include "cli/results/curve_source.h"

#include "base/text.h"
#include "cli/choice/number_limits.h"
#include "cli/output/file_reports.h"
#include "cli/output/terminal.h"
#include "cli/session.h"
#include "formats/shared/force/curve_lengths.h"
#include "formats/shared/void_ranges.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace vldv::cli {

namespace {

bool is_asked_for(const CStorageDoc& document, unsigned image, std::size_t dimensions, const curve_options& options)
{
    if (options.image >= 0 && image != static_cast<unsigned>(options.image)) return false;
    return document.isImageOk(image) && document.getImage(image).get_dimensions_number() == dimensions;
}

std::string missing(const CStorageDoc& document, std::size_t dimensions, const curve_options& options)
{
    const auto count = static_cast<unsigned>(dimensions);
    if (options.image < 0)
        return options.points.empty()
                   ? "there is no curve; surfaces and volumes need --points"
                   : base::formatted(
                         "there is no image with as many dimensions as the points of --points have numbers, %u", count);
    const auto image = static_cast<unsigned>(options.image);
    if (image >= document.getImagesNumber()) return base::formatted("there is no image %u", image);
    if (!document.isImageOk(image)) return base::formatted("image %u holds no samples", image);
    return base::formatted("image %u has %u dimensions; --points must have as many numbers a point", image,
                           document.getImage(image).get_dimensions_number());
}

} // namespace

void add_curve_options(CLI::App& command, curve_options& options, bool hasPoints)
{
    command.add_option("files", options.files, "Files to open")->required();
    command.add_option("--image", options.image, "Number of the image; all when not given")->transform(whole_number(0));
    command.add_option("--sub", options.sub, "Number of the sub-image; all when not given")->transform(whole_number(0));
    command.add_flag("--json", options.asJson, "Print JSON");
    if (hasPoints)
        command.add_option("--points", options.points, "Line through samples, as x,y;x,y;…, or triples in a volume")
            ->check(points_problem);
}

std::string points_problem(const std::string& text)
{
    return parse_points(text) ? std::string() : "\"" + text + "\" is no list of points like 0,0;31,17";
}

std::optional<std::vector<curves::grid_point>> parse_points(std::string_view text)
{
    std::vector<curves::grid_point> points;
    text = base::trimmed(text);
    if (text.ends_with(';')) text.remove_suffix(1);
    for (const std::string_view part : base::split(text, ';')) {
        curves::grid_point point;
        for (const std::string_view number : base::split(part, ',')) {
            const std::optional<long long> index = base::whole_integer(number);
            if (!index || std::abs(*index) > std::numeric_limits<std::int32_t>::max()) return {};
            point.push_back(static_cast<std::int32_t>(*index));
        }
        if (point.size() < 2 || point.size() > 3 || (!points.empty() && points[0].size() != point.size())) return {};
        points.push_back(std::move(point));
    }
    return points;
}

std::vector<section> sections_of(const CStorageDoc& document, const curve_options& options)
{
    const std::vector<curves::grid_point> points =
        options.points.empty() ? std::vector<curves::grid_point>() : parse_points(options.points).value();
    const std::size_t dimensions = points.empty() ? 1 : points[0].size();
    if (dimensions > 1 && points.size() < 2) throw std::runtime_error("--points needs two points for a line");
    std::vector<section> found;
    for (unsigned image = 0; image < document.getImagesNumber(); ++image) {
        if (!is_asked_for(document, image, dimensions, options)) continue;
        section made{image, points, {}, {}, {}, 0, 0};
        curves::take_profile(document.getImage(image), made.points, options.width, made.profile,
                             document.getString(formats::curveLengthsKey, image),
                             document.getString(formats::voidRangesKey, image));
        if (made.profile.isEmpty())
            throw std::runtime_error(base::formatted("the samples of image %u have no type", image));
        made.positions = document.getAxis(image, 0, made.profile.dimension());
        made.values = made.profile.values.get_axis(0);
        made.last = made.profile.curves - 1;
        if (options.sub >= 0) {
            if (static_cast<unsigned>(options.sub) > made.last) continue;
            made.first = made.last = static_cast<unsigned>(options.sub);
        }
        found.push_back(std::move(made));
    }
    if (!found.empty()) return found;
    if (options.sub >= 0) throw nothing_to_treat(base::formatted("there is no curve with a sub-image %d", options.sub));
    throw nothing_to_treat(missing(document, dimensions, options));
}

nlohmann::ordered_json axis_json(const VLAxis& axis)
{
    return {{"start", axis.start}, {"scale", axis.scale}, {"units", axis.get_units()}};
}

std::string heading(const CStorageDoc& document, const std::wstring& path, unsigned image)
{
    return base::formatted("%s, image %u: %s\n", path_line(base::narrow(path)).c_str(), image,
                           document.getImage(image).get_name());
}

int print_sections(const curve_options& options, const section_output& output)
{
    using json = nlohmann::ordered_json;
    session call;
    call.setFiles(options.files);
    return report_entries(call, options.asJson, [&](CStorageDoc& document, const std::wstring& path, json& entries) {
        const std::vector<section> sections = sections_of(document, options);
        const bool isOneOfMany = sections.size() > 1 || call.files().size() > 1;
        for (const section& each : sections) {
            if (options.asJson) {
                json said = {{"path", base::narrow(path)}, {"image", each.image}};
                said.update(output.json(each));
                entries.push_back(std::move(said));
            } else {
                if (isOneOfMany) std::cout << heading(document, path, each.image);
                std::cout << output.text(document, each);
            }
        }
    });
}

} // namespace vldv::cli
