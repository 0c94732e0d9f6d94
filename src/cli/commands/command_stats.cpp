// vldv stats: heights and roughness of surfaces, for people, spreadsheets or as JSON.
#include "base/text.h"
#include "base/text/decimals.h"
#include "base/units.h"
#include "cli/choice/frame_choice.h"
#include "cli/choice/frame_voids.h"
#include "cli/commands.h"
#include "cli/output/file_reports.h"
#include "cli/output/standard_streams.h"
#include "cli/output/terminal.h"
#include "cli/session.h"
#include "output/csv_text.h"
#include "output/picture_writer.h"
#include "platform/files/paths.h"
#include "surface/figures/measure/statistics.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>

namespace vldv::cli {

namespace {

using json = nlohmann::ordered_json;

struct stats_options {
    std::vector<std::string> files;
    frame_choice choice;
    std::string csv; ///< empty: none
    bool asJson = false;
};

/// The figures of a sub-image of a surface, without headings.
struct frame_rows {
    frame which;
    std::vector<surface::statistics_row> rows; ///< none when nothing was measured
    frame_voids voids;
};

std::vector<frame_rows> figures_of(const CStorageDoc& document, const frame_choice& choice)
{
    std::vector<frame_rows> figures;
    for (const frame& each : chosen_frames(document, choice, refuse_no_surface)) {
        frame_rows& made = figures.emplace_back(frame_rows{each, {}, voids_of(document, each)});
        const auto width = static_cast<int>(document.getImage(each.image).get_dimension(0).length);
        const document::rising_heights heights = frame_heights(document, each);
        for (surface::statistics_row& row :
             surface::frame_statistics(heights.samples(), width, heights.axis(), made.voids.runs))
            if (!row.name.empty()) made.rows.push_back(std::move(row));
    }
    return figures;
}

/// Figures of different files compare as they are in the unit of their kind.
surface::statistics_row in_base_units(surface::statistics_row row)
{
    row.units = base_units(row.units.c_str(), &row.value);
    return row;
}

json document_json(const CStorageDoc& document, const std::vector<frame_rows>& figures, const std::wstring& path)
{
    json images = json::array();
    for (const auto& [which, rows, voids] : figures) {
        json told = json::array();
        for (const surface::statistics_row& row : rows) {
            const surface::statistics_row shown = in_base_units(row);
            told.push_back({{"name", shown.name}, {"value", shown.value}, {"units", shown.units}});
        }
        images.push_back({{"id", document.getImage(which.image).get_name()},
                          {"image", which.image},
                          {"subimage", which.sub},
                          {"rows", told}});
        add_voids(images.back(), voids);
    }
    return {{"path", base::narrow(path)}, {"images", images}};
}

double range_of(const std::vector<surface::statistics_row>& rows)
{
    const auto found = std::ranges::find(rows, "Rmax", &surface::statistics_row::name);
    return found == rows.end() ? 0.0 : found->value;
}

void print_figures(const CStorageDoc& document, const std::vector<frame_rows>& figures, const std::wstring& path)
{
    std::cout << path_line(base::narrow(path)) << '\n';
    for (const auto& [which, rows, voids] : figures) {
        std::cout << "  " << frame_title(document, which) << '\n';
        const double range = range_of(rows);
        for (const surface::statistics_row& row : rows) {
            // For people each number stands in the unit in which it reads well, heights with digits that tell them
            // apart.
            const surface::statistics_row shown = surface::reading_well(row);
            const int digits = base::telling_digits(row.value, row.isHeight ? range : 0.0);
            std::cout << "    " << shown.name << ": " << base::general(shown.value, digits)
                      << (shown.units.empty() ? "" : " ") << shown.units << '\n';
        }
        std::cout << voids_text(voids);
    }
}

/// A table for spreadsheets with one line a sub-image; figures of one without a measured sample are empty.
class stats_table {
public:
    void add(const CStorageDoc& document, const std::vector<frame_rows>& figures, const std::wstring& path)
    {
        if (text.empty()) text = output::csv_line(heads());
        for (const frame_rows& each : figures) text += output::csv_line(cellsOf(document, each, path));
    }
    /// Nothing is written when no file had a row: an earlier table stays. \return whether it was written
    bool save(const std::filesystem::path& output) const
    {
        if (text.empty()) return false;
        const std::span bytes = std::as_bytes(std::span(text));
        if (output == standardStream)
            put_standard_output(bytes);
        else
            output::save_file_atomically(output, bytes);
        return true;
    }

private:
    static std::vector<std::string> heads()
    {
        std::vector<std::string> made = {"file", "image", "id", "subimage", "name", "units"};
        const auto figures = surface::figure_names();
        made.insert(made.end(), figures.begin(), figures.end());
        made.insert(made.end(), {"not_measured", "not_measured_included"});
        return made;
    }
    static std::vector<std::string> cellsOf(const CStorageDoc& document, const frame_rows& each,
                                            const std::wstring& path)
    {
        const SPMDataStream& stream = document.getImage(each.which.image);
        const auto& names = stream.subimage_names();
        std::vector<std::string> cells = {base::narrow(path),
                                          std::to_string(each.which.image),
                                          stream.get_name(),
                                          std::to_string(each.which.sub),
                                          each.which.sub < names.size() ? names[each.which.sub].c_str() : "",
                                          ""};
        for (const surface::statistics_row& row : each.rows) {
            const surface::statistics_row shown = in_base_units(row);
            if (cells[unitsColumn].empty()) cells[unitsColumn] = shown.units;
            cells.push_back(base::shortest(shown.value));
        }
        cells.resize(unitsColumn + 1 + surface::figure_names().size());
        cells.push_back(std::to_string(each.voids.leftOut));
        cells.push_back(std::to_string(each.voids.included));
        return cells;
    }

    static constexpr std::size_t unitsColumn = 5; ///< of the heights; the other figures have none
    std::string text;
};

int run(const stats_options& options)
{
    if (options.asJson && options.csv == standardStream)
        throw CLI::ValidationError("stats", "--json and --csv - would share standard output");
    session call;
    call.setFiles(options.files);
    std::filesystem::path output = options.csv;
    if (!options.csv.empty() && options.csv != standardStream) {
        output = platform::to_path(platform::full_path(base::widen(options.csv)));
        call.claim(output);
    }
    stats_table table;
    report_files(call, options.asJson, [&](CStorageDoc& document, const std::wstring& path) -> json {
        const std::vector<frame_rows> figures = figures_of(document, options.choice);
        table.add(document, figures, path);
        if (options.asJson) return document_json(document, figures, path);
        if (options.csv.empty()) print_figures(document, figures, path);
        return {};
    });
    if (!options.csv.empty() && table.save(output) && !options.asJson && output != standardStream)
        std::cout << path_line(output.native()) << '\n';
    return call.status();
}

} // namespace

void add_stats(CLI::App& app, int& status)
{
    auto options = std::make_shared<stats_options>();
    CLI::App* command = app.add_subcommand("stats", "Tell heights and roughness of surfaces");
    command->add_option("files", options->files, "Files to open")->required();
    add_frame_options(*command, options->choice);
    command->add_option("--csv", options->csv, "Table for a spreadsheet, a line a sub-image; - is standard output");
    command->add_flag("--json", options->asJson, "Print JSON");
    command->callback([options, &status] { status = run(*options); });
}

} // namespace vldv::cli
