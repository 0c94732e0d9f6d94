// vldv steps: the edges of terraces, followed from scan line to scan line.
#include "base/text.h"
#include "cli/choice/frame_choice.h"
#include "cli/choice/frame_voids.h"
#include "cli/choice/number_limits.h"
#include "cli/choice/word_choice.h"
#include "cli/commands.h"
#include "cli/output/file_reports.h"
#include "cli/output/result_files.h"
#include "cli/output/terminal.h"
#include "surface/figures/measure/step_results.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>

namespace vldv::cli {

namespace {

using json = nlohmann::ordered_json;

struct step_options {
    std::vector<std::string> files;
    frame_choice choice;
    surface::steps_direction direction = surface::steps_direction::rightToLeft;
    double threshold = 1.0;
    std::optional<int> slope, startRows, gap; ///< none: from the size of the image
    int startRow = 0, endRow = 0;
    std::string output;
    bool asJson = false, replaces = false;
};

/// Which setting is of no image of this size; empty when all can be.
std::string refuse_settings(const step_options& options, const surface::sample_frame& frame)
{
    const struct {
        const char* name;
        int value, most;
    } limits[] = {{"--slope", options.slope.value_or(0), (frame.width - 1) / 2},
                  {"--start-row", options.startRow, frame.height - 1},
                  {"--end-row", options.endRow, frame.height - 1 - options.startRow},
                  {"--start-rows", options.startRows.value_or(1), frame.height - options.startRow - options.endRow}};
    for (const auto& [name, value, most] : limits)
        if (value > most)
            return base::formatted("%s %d is above %d, the most for %d columns and %d rows", name, value,
                                   std::max(most, 0), frame.width, frame.height);
    return {};
}

surface::step_settings settings_for(const step_options& options, const surface::sample_frame& frame)
{
    surface::step_settings made = surface::step_settings::proposed(frame.width, frame.height);
    made.direction = options.direction;
    made.threshold = options.threshold;
    made.leftBorder = std::min(options.slope.value_or(made.leftBorder), (frame.width - 1) / 2);
    made.searchRows = options.startRows.value_or(made.searchRows);
    made.gap = options.gap.value_or(made.gap);
    made.startRow = options.startRow;
    made.endRow = options.endRow;
    return made;
}

struct frame_steps {
    frame which;
    surface::step_settings settings;
    std::deque<surface::surface_step> steps;
    frame_voids voids;
};

std::vector<frame_steps> find_all(const CStorageDoc& document, const step_options& options)
{
    const std::vector<frame> frames = chosen_frames(document, options.choice, refuse_no_surface);
    std::vector<frame_steps> found;
    for (const frame& each : frames) {
        const SPMDataStream& stream = document.getImage(each.image);
        const document::rising_heights heights = frame_heights(document, each);
        frame_voids voids = voids_of(document, each);
        const surface::sample_frame frame{heights.samples(), static_cast<int>(stream.get_dimension(0).length),
                                          static_cast<int>(stream.get_dimension(1).length), voids.runs};
        if (const std::string reason = refuse_settings(options, frame); !reason.empty())
            throw std::runtime_error(frame_title(document, each) + ": " + reason);
        const surface::step_settings settings = settings_for(options, frame);
        found.push_back({each, settings, surface::find_steps(frame, settings), std::move(voids)});
    }
    return found;
}

/// Puts the steps into the document in place of those of earlier searches.
void store(CStorageDoc& document, const std::vector<frame_steps>& found)
{
    const auto isResult = [&document](unsigned image) {
        return std::string_view(document.getImage(image).get_name()).starts_with("step");
    };
    std::vector<unsigned> places; // of the images, once the old results are gone
    for (unsigned image = 0, place = 0; image < document.getImagesNumber(); ++image)
        places.push_back(isResult(image) ? place : place++);
    for (const frame_steps& each : found)
        if (isResult(each.which.image))
            throw std::runtime_error(base::formatted("image %u: its name begins with \"step\", so it would be removed "
                                                     "with the results of earlier searches",
                                                     each.which.image));
    surface::remove_step_images(document);
    unsigned number = 0;
    for (const frame_steps& each : found)
        number = surface::add_step_images(document, places[each.which.image], each.steps, each.settings, number);
}

json to_json(const surface::surface_step& step)
{
    json points = json::array();
    for (const auto [row, column] : step) points.push_back(json::array({row, column}));
    return points;
}

json images_json(const CStorageDoc& document, const std::vector<frame_steps>& found)
{
    json images = json::array();
    for (const frame_steps& each : found) {
        json steps = json::array();
        for (const surface::surface_step& step : each.steps) steps.push_back(to_json(step));
        images.push_back({{"id", document.getImage(each.which.image).get_name()},
                          {"image", each.which.image},
                          {"subimage", each.which.sub},
                          {"steps", std::move(steps)}});
        add_voids(images.back(), each.voids);
    }
    return images;
}

std::string to_text(const CStorageDoc& document, const std::vector<frame_steps>& found)
{
    std::string text;
    for (const frame_steps& each : found) {
        text += "  " + frame_title(document, each.which) +
                base::formatted(each.steps.size() == 1 ? ", %zu step\n" : ", %zu steps\n", each.steps.size()) +
                voids_text(each.voids);
        std::size_t number = 0;
        for (const surface::surface_step& step : each.steps) {
            double sum = 0.0;
            for (const surface::step_point& point : step) sum += point.column;
            text += base::formatted("    step %zu: rows %d to %d, first column %d, last column %d, mean column %s\n",
                                    ++number, step.front().row, step.back().row, step.front().column,
                                    step.back().column, base::general(sum / static_cast<double>(step.size())).c_str());
        }
    }
    return text;
}

/// What was found is told before it is stored, which may fail.
void treat(CStorageDoc& document, const std::wstring& path, const step_options& options,
           std::optional<result_files>& outputs, json& entries)
{
    const std::vector<frame_steps> found = find_all(document, options);
    entries.push_back({{"path", base::narrow(path)}, {"images", images_json(document, found)}});
    if (!options.asJson) std::cout << path_line(base::narrow(path)) << '\n' << to_text(document, found);
    if (!outputs) return;
    store(document, found);
    const std::string output = outputs->save(document, path).native();
    entries.back()["output"] = output;
    if (!options.asJson) std::cout << path_line(output) << '\n';
}

int run(const step_options& options)
{
    session call;
    call.letReplace(options.replaces);
    call.setFiles(options.files, {options.output});
    std::optional<result_files> outputs;
    if (!options.output.empty()) outputs.emplace(call, output_names(options.output, ".spm"));
    return report_entries(call, options.asJson, [&](CStorageDoc& document, const std::wstring& path, json& entries) {
        treat(document, path, options, outputs, entries);
    });
}

} // namespace

void add_steps(CLI::App& app, int& status)
{
    auto options = std::make_shared<step_options>();
    CLI::App* command = app.add_subcommand("steps", "Find and follow the edges of terraces");
    command->add_option("files", options->files, "Files to open")->required();
    add_frame_options(*command, options->choice);
    take_words<surface::steps_direction>(
        *command->add_option("--direction", options->direction,
                             "Edges that fall along the rows (ltr), or that rise (rtl, default)"),
        {{"ltr", surface::steps_direction::leftToRight}, {"rtl", surface::steps_direction::rightToLeft}});
    command
        ->add_option_function<std::string>(
            "--threshold", [options](const std::string& text) { options->threshold = *base::whole_number(text); },
            "Standard deviations that an edge is steeper than the mean (default: 1)")
        ->check(number_at_least(0.0));
    command->add_option("--slope", options->slope, "Columns to either side with nothing steeper (default: width / 32)")
        ->transform(whole_number(0));
    command->add_option("--start-rows", options->startRows, "Rows in which edges begin (default: height / 13)")
        ->transform(whole_number(1));
    command->add_option("--gap", options->gap, "Rows that an edge may be missing (default: height / 100)")
        ->transform(whole_number(1));
    command->add_option("--start-row", options->startRow, "First row")->transform(whole_number(0));
    command->add_option("--end-row", options->endRow, "Rows left out at the end")->transform(whole_number(0));
    CLI::Option* const output = command->add_option("-o,--output", options->output,
                                                    "Document with an image for each step; a folder for several");
    command->add_flag("--force", options->replaces, "Replace containers that hold something else")->needs(output);
    command->add_flag("--json", options->asJson, "Print JSON");
    command->callback([options, &status] { status = run(*options); });
}

} // namespace vldv::cli
