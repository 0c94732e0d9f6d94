// vldv features: the areas of surfaces above a threshold, and ten measurements of each.
#include "base/text.h"
#include "cli/choice/frame_choice.h"
#include "cli/choice/image_part.h"
#include "cli/choice/picture_options.h"
#include "cli/choice/text_check.h"
#include "cli/choice/word_choice.h"
#include "cli/commands.h"
#include "cli/output/file_reports.h"
#include "cli/output/result_files.h"
#include "cli/output/terminal.h"
#include "cli/results/feature_output.h"
#include "output/picture_writer.h"
#include "spectra/figures/features/feature_search.h"
#include "spectra/figures/features/measured_block.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <optional>
#include <span>
#include <utility>

namespace vldv::cli {

namespace {

using json = nlohmann::ordered_json;

struct feature_options {
    std::vector<std::string> files;
    frame_choice choice;
    spectra::threshold_choice threshold;
    std::vector<int> rect; ///< none: the whole image
    std::string csv, mask;
    bool asJson = false;
};

frame_features find_features(const CStorageDoc& document, const frame& which, const feature_options& options)
{
    const SPMDataStream& stream = document.getImage(which.image);
    const int width = static_cast<int>(stream.get_dimension(0).length);
    const int height = static_cast<int>(stream.get_dimension(1).length);
    frame_features made;
    made.working =
        options.rect.empty() ? CRect(0, 0, width, height) : part_of_image("--rect", options.rect, {width, height});
    const document::rising_heights heights = frame_heights(document, which);
    made.axes = {document.getAxis(which.image, 0, 0), document.getAxis(which.image, 0, 1), heights.axis()};
    const primitives::const_height_block whole{heights.samples().data(), width, height, 2 * width};
    made.voids = voids_of(document, which);
    const spectra::measured_block block(whole, made.working, made.voids.runs);
    made.voids.leftOut = block.leftOut();
    spectra::found_features found = spectra::find_features(block, made.working.TopLeft(), made.axes, options.threshold);
    made.levels = found.levels;
    made.list = std::move(found.list);
    return made;
}

std::string share_problem(const std::string& text)
{
    const auto share = base::whole_number(text);
    return share && *share >= 0.0 && *share <= 1.0 ? "" : "expected a number from 0 to 1, not \"" + text + '"';
}

/// The files that a call writes besides what it prints.
class feature_files {
public:
    feature_files(session& call, const feature_options& options)
        : oneFile(call.files().size() == 1), asJson(options.asJson)
    {
        if (!options.csv.empty()) tables.emplace(call, output_names(options.csv, ".csv"));
        if (options.mask.empty()) return;
        const output_names names(options.mask, ".png");
        if (!names.areInFolder() &&
            output::picture_format_of(std::filesystem::path(options.mask).filename().native()) !=
                output::picture_format::png)
            throw CLI::ValidationError("--mask", '\"' + visible_text(options.mask) +
                                                     "\" is neither a picture (png) nor a folder, "
                                                     "which would end with a slash");
        masks.emplace(call, names);
    }
    /// Adds the name of each file when it is written, and prints it unless the entry is what is printed.
    void write(const frame_features& made, const frame& which, bool alone, const std::wstring& input, json& entry)
    {
        const std::string suffix = base::formatted("-%u-%u", which.image, which.sub);
        const auto save = [&](result_files& files, const char* kind, std::span<const std::byte> bytes) {
            const std::filesystem::path path = files.next(input, suffix, alone && oneFile);
            output::save_file_atomically(path, bytes);
            entry[kind] = path.native();
            if (!asJson) std::cout << path_line(path.native()) << '\n';
        };
        if (tables) {
            const std::string text = features_csv(made);
            save(*tables, "csv", std::as_bytes(std::span(text)));
        }
        if (masks) save(*masks, "mask", features_png(made));
    }

private:
    bool oneFile, asJson;
    std::optional<result_files> tables, masks;
};

/// What was found in an image is told before it is written, which may fail.
void treat(const CStorageDoc& document, const std::wstring& path, const feature_options& options, feature_files& files,
           json& entries)
{
    const std::vector<frame> frames = chosen_frames(document, options.choice, refuse_no_surface);
    entries.push_back({{"path", base::narrow(path)}, {"images", json::array()}});
    if (!options.asJson) std::cout << path_line(base::narrow(path)) << '\n';
    for (const frame& each : frames) {
        const frame_features made = find_features(document, each, options);
        json& images = entries.back()["images"];
        images.push_back(
            {{"id", document.getImage(each.image).get_name()}, {"image", each.image}, {"subimage", each.sub}});
        if (options.asJson)
            images.back().update(features_json(made));
        else
            std::cout << "  " << frame_title(document, each) << '\n' << features_text(made);
        files.write(made, each, frames.size() == 1, path, images.back());
    }
}

int run(const feature_options& options)
{
    session call;
    call.setFiles(options.files, {options.csv, options.mask});
    feature_files outputs(call, options);
    return report_entries(call, options.asJson, [&](CStorageDoc& document, const std::wstring& path, json& entries) {
        treat(document, path, options, outputs, entries);
    });
}

} // namespace

void add_features(CLI::App& app, int& status)
{
    auto options = std::make_shared<feature_options>();
    CLI::App* command = app.add_subcommand("features", "Find and measure what rises above a threshold");
    command->add_option("files", options->files, "Files to open")->required();
    add_frame_options(*command, options->choice);
    command
        ->add_option_function<std::string>(
            "--level",
            [options](const std::string& text) {
                options->threshold.mode = spectra::threshold_mode::manual;
                options->threshold.level = *base::whole_number(text);
            },
            "Threshold as a share of the range, from 0 to 1 (default: automatic)")
        ->check(share_problem);
    CLI::Option* const mode = command->add_option("--threshold", options->threshold.mode,
                                                  "Rule of the threshold; watershed parts features that touch");
    take_words<spectra::threshold_mode>(*mode, {{"auto", spectra::threshold_mode::automatic},
                                                {"otsu", spectra::threshold_mode::otsu},
                                                {"watershed", spectra::threshold_mode::watershed}});
    mode->excludes("--level");
    CLI::Option* const depth = command->add_option_function<std::string>(
        "--depth", [options](const std::string& text) { options->threshold.depth = *base::whole_number(text); },
        "How far summits rise above what joins them, a share of the height above the threshold (default: 0.1)");
    depth->check(share_problem);
    command
        ->add_option_function<std::string>(
            "--rect", [options](const std::string& text) { options->rect = *parse_rectangle(text); },
            "Part of the image LEFT,TOP,RIGHT,BOTTOM, right and bottom outside (default: all)")
        ->check(must_parse(parse_rectangle, "LEFT,TOP,RIGHT,BOTTOM"));
    command->add_option("--csv", options->csv, "Table for a spreadsheet; a folder for several");
    command->add_option("--mask", options->mask, "Picture (png) of the features; a folder for several");
    command->add_flag("--json", options->asJson, "Print JSON");
    command->callback([options, depth, &status] {
        if (depth->count() > 0 && options->threshold.mode != spectra::threshold_mode::watershed)
            throw CLI::ValidationError("--depth", "is one of --threshold watershed");
        status = run(*options);
    });
}

} // namespace vldv::cli
