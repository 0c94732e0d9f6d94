// vldv histogram: how the heights of images are distributed, and the share between two delimiters.
#include "base/streams/axis_units.h"
#include "base/text.h"
#include "base/text/decimals.h"
#include "base/units.h"
#include "cli/choice/frame_choice.h"
#include "cli/choice/frame_voids.h"
#include "cli/choice/number_limits.h"
#include "cli/choice/text_check.h"
#include "cli/commands.h"
#include "cli/output/file_reports.h"
#include "cli/output/terminal.h"
#include "cli/session.h"
#include "document/samples/measured_samples.h"
#include "spectra/figures/histogram.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <iostream>
#include <nlohmann/json.hpp>

namespace vldv::cli {

namespace {

using json = nlohmann::ordered_json;

struct histogram_options {
    std::vector<std::string> files;
    frame_choice choice;
    unsigned bars = 0; ///< 0: automatic
    spectra::delimiters window;
    bool asJson = false;
};

struct frame_histogram {
    frame which;
    spectra::height_histogram counted;
    spectra::delimited_share share;
    std::string units;
    frame_voids voids;
};

/// For machines values stand in the unit of their kind, for people in the one in which their range reads well.
std::string shown_units(const spectra::height_histogram& counted, const VLAxis& axis, bool forMachines)
{
    double range = counted.valueRange;
    return forMachines ? base_units(axis.get_units(), &range) : readable_units(axis.get_units(), range);
}

std::vector<frame_histogram> histograms(const CStorageDoc& document, const histogram_options& options)
{
    std::vector<frame_histogram> made;
    std::optional<document::measured_samples> held;
    for (const frame& each : chosen_frames(document, options.choice, refuse_no_heights)) {
        const auto bars = options.bars ? std::optional(options.bars) : std::nullopt;
        if (!held || held->imageNumber() != each.image) held.emplace(document, each.image);
        const document::rising_heights heights(held->of(each.sub), document.getAxis(each.image, 0, unsigned(-1)));
        auto counted = spectra::make_histogram(heights.samples(), heights.axis(), bars);
        std::string units = shown_units(counted, heights.axis(), options.asJson);
        counted = spectra::in_units(std::move(counted), heights.axis().get_units(), units.c_str());
        const spectra::delimited_share share = spectra::share_between(counted, options.window);
        made.push_back({each, std::move(counted), share, std::move(units), voids_of(document, each)});
    }
    return made;
}

json document_json(const CStorageDoc& document, const std::vector<frame_histogram>& made, const std::wstring& path)
{
    json images = json::array();
    for (const auto& [which, counted, share, units, voids] : made) {
        if (counted.totalCount == 0) {
            images.push_back({{"image", which.image}, {"subimage", which.sub}, {"measured", false}});
            add_voids(images.back(), voids);
            continue;
        }
        images.push_back({{"id", document.getImage(which.image).get_name()},
                          {"image", which.image},
                          {"subimage", which.sub},
                          {"units", units},
                          {"bins", counted.bins},
                          {"min", counted.valueMin},
                          {"max", counted.valueMax},
                          {"total", counted.totalCount},
                          {"peak", counted.peakCount},
                          {"x0", share.x0},
                          {"x1", share.x1},
                          {"selected", share.selectedCount}});
        add_voids(images.back(), voids);
    }
    return {{"path", base::narrow(path)}, {"images", images}};
}

/// What the view writes under the chart, then a bin a line: the value of its middle and its count.
void print_text(const CStorageDoc& document, const std::vector<frame_histogram>& made, const std::wstring& path)
{
    std::string text = path_line(base::narrow(path)) + '\n';
    for (const auto& [which, counted, share, units, voids] : made) {
        text += "  " + frame_title(document, which) + '\n';
        if (counted.totalCount == 0) {
            text += "    not measured\n";
            continue;
        }
        text += "    " + spectra::share_text(share, units.c_str()) + '\n' + voids_text(voids);
        const double step = counted.bins.size() > 1 ? counted.valueRange / double(counted.bins.size() - 1) : 0.0;
        const int digits =
            base::telling_digits(std::max(std::fabs(counted.valueMin), std::fabs(counted.valueMax)), step);
        for (std::size_t i = 0; i < counted.bins.size(); ++i)
            text += "    " + base::general(counted.valueMin + double(i) * step, digits) + '\t' +
                    std::to_string(counted.bins[i]) + '\n';
    }
    std::cout << text;
}

int run(const histogram_options& options)
{
    session call;
    call.setFiles(options.files);
    return report_files(call, options.asJson, [&](CStorageDoc& document, const std::wstring& path) -> json {
        const std::vector<frame_histogram> made = histograms(document, options);
        if (options.asJson) return document_json(document, made, path);
        print_text(document, made, path);
        return {};
    });
}

/// "F1,F2", both from 0 to 1 in either order.
std::optional<spectra::delimiters> parse_delimiters(const std::string& text)
{
    const auto parts = base::split(text, ',');
    if (parts.size() != 2) return std::nullopt;
    const auto f1 = base::whole_number(parts[0]), f2 = base::whole_number(parts[1]);
    const auto isShare = [](const std::optional<double>& f) { return f && *f >= 0.0 && *f <= 1.0; };
    if (!isShare(f1) || !isShare(f2)) return std::nullopt;
    return spectra::delimiters{*f1, *f2};
}

} // namespace

void add_histogram(CLI::App& app, int& status)
{
    auto options = std::make_shared<histogram_options>();
    CLI::App* command = app.add_subcommand("histogram", "Count heights into bins");
    command->add_option("files", options->files, "Files to open")->required();
    add_frame_options(*command, options->choice);
    constexpr unsigned maxBars = 1u << 24;
    command->add_option("--bars", options->bars, "Number of bins (default: half the root of the count of samples)")
        ->transform(whole_number(2, maxBars));
    command
        ->add_option_function<std::string>(
            "--window", [options](const std::string& text) { options->window = *parse_delimiters(text); },
            "Delimiters F1,F2 as shares of the range (default: 0.25,0.75)")
        ->check(must_parse(parse_delimiters, "F1,F2 from 0 to 1"));
    command->add_flag("--json", options->asJson, "Print JSON");
    command->callback([options, &status] { status = run(*options); });
}

} // namespace vldv::cli
