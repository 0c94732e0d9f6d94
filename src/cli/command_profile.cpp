// vldv profile: the samples along a line through an image, or of a curve.
#include "base/text.h"
#include "cli/commands.h"
#include "cli/curve_source.h"
#include "cli/session.h"
#include "curves/table_text.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

using json = nlohmann::ordered_json;

json section_json(const section& each, const std::wstring& path)
{
    json lines = json::array();
    for (unsigned k = each.first; k <= each.last; ++k) {
        const auto curve = each.profile.curve(k);
        lines.push_back({{"subimage", k}, {"raw", std::vector<std::int16_t>(curve.begin(), curve.end())}});
    }
    return {{"path", base::narrow(path)},
            {"image", each.image},
            {"length", each.profile.length},
            {"segments", each.profile.segmentLengths},
            {"x", axis_json(each.positions)},
            {"y", axis_json(each.values)},
            {"curves", lines}};
}

int run(const curve_options& options)
{
    session call;
    call.setFiles(options.files);
    json files = json::array();
    call.forEachDocument(
        [&](CStorageDoc& document, const std::wstring& path) {
            const std::vector<section> sections = sections_of(document, options);
            const bool isOneOfMany = sections.size() > 1 || call.files().size() > 1;
            for (const section& each : sections) {
                if (options.asJson) {
                    files.push_back(section_json(each, path));
                    continue;
                }
                if (isOneOfMany) std::cout << heading(document, path, each.image);
                std::cout << curves::section_text(each.profile, each.points,
                                                  document.getImage(each.image).get_dimensions_number(), each.positions,
                                                  each.values, each.first, each.last);
            }
        },
        [&](const std::wstring& path, const std::string& reason) {
            files.push_back({{"path", base::narrow(path)}, {"error", reason}});
        });
    if (options.asJson) std::cout << json{{"files", files}}.dump(2, ' ', false, json::error_handler_t::replace) << '\n';
    return call.status();
}

} // namespace

void add_profile(CLI::App& app, int& status)
{
    auto options = std::make_shared<curve_options>();
    CLI::App* command = app.add_subcommand("profile", "Print the samples along a line, or of a curve");
    add_curve_options(*command, *options, true);
    command->add_option("--width", options->width, "Take the mean of so many lines on either side; surfaces only")
        ->check(CLI::Range(0u, 10000u))
        ->capture_default_str();
    command->callback([options, &status] { status = run(*options); });
}

} // namespace cli
