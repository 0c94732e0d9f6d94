// vldv info: what files hold, for people or as JSON.
#include "base/text.h"
#include "cli/commands.h"
#include "cli/output/file_reports.h"
#include "cli/output/reader_notes.h"
#include "cli/results/info_text.h"
#include "cli/session.h"
#include "document/document_table.h"
#include "document/samples/measured_samples.h"
#include "formats/shared/format_notes.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <nlohmann/json.hpp>

namespace vldv::cli {

namespace {

using json = nlohmann::ordered_json;

json axes_json(const VLAxesContainer& axes)
{
    json out = json::array();
    for (unsigned i = 0; i < axes.get_axes_number(); ++i) {
        const VLAxis& axis = axes.get_axis(i);
        out.push_back({{"start", axis.start}, {"scale", axis.scale}, {"units", axis.get_units()}});
    }
    return out;
}

json names_json(const std::vector<smart_string>& names)
{
    json out = json::array();
    for (const smart_string& name : names) out.push_back(name.c_str());
    return out;
}

/// An object even when the table is empty. Keys of a table are unique: to look for each among all before it would take
/// a time that grows with the square of their number.
json strings_json(const CStorageDoc::string_table& strings)
{
    json out = json::object();
    auto& members = out.get_ref<json::object_t&>();
    members.reserve(strings.size());
    for (const auto& [key, text] : strings) members.emplace_back(key, text);
    return out;
}

json ranges_json(const CStorageDoc& document, unsigned image)
{
    if (document.getImage(image).array_type() != SPM_ARRAY_INT16) return nullptr;
    json out = json::array();
    document::measured_samples held(document, image);
    for (unsigned sub = 0; sub < document.getSubImagesNumber(image); ++sub) {
        const std::optional<CMinMaxInfo> range = held.rangeOf(sub);
        out.push_back(range ? json{{"min", range->minimum}, {"max", range->maximum}} : json());
    }
    return out;
}

json image_json(const CStorageDoc& document, unsigned image)
{
    const SPMDataStream& stream = document.getImage(image);
    json dimensions = json::array();
    for (unsigned i = 0; i < stream.get_dimensions_number(); ++i)
        dimensions.push_back(
            {{"length", stream.get_dimension(i).length}, {"axes", axes_json(stream.get_dimension(i))}});
    const char* parameter = stream.get_parameter_stream();
    return {{"id", stream.get_name()},
            {"label", stream.get_description()},
            {"type", array_type_keyword(stream.array_type())},
            {"length", stream.array_length()},
            {"dimensions", dimensions},
            {"values", axes_json(stream.values)},
            {"subimages", names_json(stream.subimage_names())},
            {"subimage_count", document.getSubImagesNumber(image)},
            {"parameter", parameter ? json(parameter) : json(nullptr)},
            {"depends", names_json(stream.dependent_vars())},
            {"strings", strings_json(document.strings(image))},
            {"range", ranges_json(document, image)}};
}

json document_json(const CStorageDoc& document, const std::wstring& path)
{
    json images = json::array();
    for (unsigned i = 0; i < document.getImagesNumber(); ++i) images.push_back(image_json(document, i));
    json out = {{"path", base::narrow(path)},
                {"type", formats::note_of(document.fileType).title},
                {"size", document.getFileSize()},
                {"title", base::narrow(document.GetTitle())},
                {"strings", strings_json(document.strings(document::documentTable))},
                {"images", images}};
    if (std::vector<std::string> notes = notes_of(document); !notes.empty()) out["warnings"] = std::move(notes);
    return out;
}

struct info_options {
    std::vector<std::string> files;
    bool asJson = false, withDetails = false, withStrings = false;
};

int run(const info_options& options)
{
    session call;
    call.letTellNotes(false); // they are part of what is printed
    call.setFiles(options.files);
    return report_files(call, options.asJson, [&](CStorageDoc& document, const std::wstring& path) -> json {
        if (options.asJson) return document_json(document, path);
        if (options.withDetails || options.withStrings)
            print_info_details(document, path, options.withStrings);
        else
            print_info_table(document, path);
        return {};
    });
}

} // namespace

void add_info(CLI::App& app, int& status)
{
    auto options = std::make_shared<info_options>();
    CLI::App* command = app.add_subcommand("info", "Tell what files hold");
    command->add_option("files", options->files, "Files to open")->required();
    command->add_flag("--details", options->withDetails, "Print every axis and every sub-image's range");
    command->add_flag("--json", options->asJson, "Print JSON");
    command->add_flag("--strings", options->withStrings, "Print the details and the text parameters");
    command->callback([options, &status] { status = run(*options); });
}

} // namespace vldv::cli
