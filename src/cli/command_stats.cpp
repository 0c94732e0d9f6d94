// vldv stats: heights and roughness of surfaces, for people or as JSON.
#include "base/text.h"
#include "cli/commands.h"
#include "cli/file_reports.h"
#include "cli/session.h"
#include "surface/statistics.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

using json = nlohmann::ordered_json;

struct stats_options {
    std::vector<std::string> files;
    bool asJson = false;
};

/// A sub-image of a surface.
struct frame {
    unsigned image, sub;
    std::string id;
    std::vector<surface::statistics_row> rows; ///< without headings
};

bool is_surface(const CStorageDoc& document, unsigned image)
{
    const SPMDataStream& stream = document.getImage(image);
    return document.isImageOk(image) && stream.get_dimensions_number() == 2 && stream.array_type() == SPM_ARRAY_INT16 &&
           document.getSubImageLength(image) > 0;
}

std::vector<frame> frames_of(const CStorageDoc& document)
{
    std::vector<frame> frames;
    for (unsigned image = 0; image < document.getImagesNumber(); ++image) {
        if (!is_surface(document, image)) continue;
        const SPMDataStream& stream = document.getImage(image);
        for (unsigned sub = 0; sub < document.getSubImagesNumber(image); ++sub) {
            const std::span samples(static_cast<const std::int16_t*>(document.getImageDataS(image, sub)),
                                    document.getSubImageLength(image));
            frame& made = frames.emplace_back(frame{image, sub, stream.get_name(), {}});
            for (surface::statistics_row& row :
                 surface::frame_statistics(samples, static_cast<int>(stream.get_dimension(0).length),
                                           document.getAxis(image, 0, unsigned(-1))))
                if (!row.name.empty()) made.rows.push_back(std::move(row));
        }
    }
    return frames;
}

json document_json(const std::vector<frame>& frames, const std::wstring& path)
{
    json images = json::array();
    for (const frame& each : frames) {
        json rows = json::array();
        for (const surface::statistics_row& row : each.rows)
            rows.push_back({{"name", row.name}, {"value", row.value}, {"units", row.units}});
        images.push_back({{"id", each.id}, {"subimage", each.sub}, {"rows", rows}});
    }
    return {{"path", base::narrow(path)}, {"images", images}};
}

void print_frames(const CStorageDoc& document, const std::vector<frame>& frames, const std::wstring& path)
{
    std::cout << base::narrow(path) << '\n';
    for (const frame& each : frames) {
        const auto& names = document.getImage(each.image).subimage_names();
        std::cout << "  image " << each.image << ": " << each.id << ", sub-image " << each.sub;
        if (each.sub < names.size()) std::cout << " \"" << names[each.sub].c_str() << '"';
        std::cout << '\n';
        for (const surface::statistics_row& row : each.rows) {
            // For people each number stands in the unit in which it reads well.
            const surface::statistics_row shown = surface::reading_well(row);
            std::cout << "    " << shown.name << ": " << base::general(shown.value) << (shown.units.empty() ? "" : " ")
                      << shown.units << '\n';
        }
    }
}

int run(const stats_options& options)
{
    session call;
    call.setFiles(options.files);
    return report_files(call, options.asJson, [&](CStorageDoc& document, const std::wstring& path) -> json {
        const std::vector<frame> frames = frames_of(document);
        if (options.asJson) return document_json(frames, path);
        print_frames(document, frames, path);
        return {};
    });
}

} // namespace

void add_stats(CLI::App& app, int& status)
{
    auto options = std::make_shared<stats_options>();
    CLI::App* command = app.add_subcommand("stats", "Tell heights and roughness of surfaces");
    command->add_option("files", options->files, "Files to open")->required();
    command->add_flag("--json", options->asJson, "Print JSON");
    command->callback([options, &status] { status = run(*options); });
}

} // namespace cli
