// vldv info: what files hold, for people or as JSON.
#include "base/text.h"
#include "cli/commands.h"
#include "cli/session.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <nlohmann/json.hpp>

namespace cli {

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

/// An object even when the table is empty.
json strings_json(const CStorageDoc::string_table& strings)
{
    json out = json::object();
    for (const auto& [key, text] : strings) out[key] = text;
    return out;
}

json ranges_json(const CStorageDoc& document, unsigned image)
{
    if (document.getImage(image).array_type() != SPM_ARRAY_INT16) return nullptr;
    json out = json::array();
    for (unsigned sub = 0; sub < document.getSubImagesNumber(image); ++sub) {
        CMinMaxInfo range;
        document.getMinMaxInfo(image, range, sub);
        out.push_back({{"min", range.minimum}, {"max", range.maximum}});
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
    return {{"path", base::narrow(path)},
            {"type", format_name(document.fileType)},
            {"size", document.getFileSize()},
            {"title", base::narrow(document.GetTitle())},
            {"strings", strings_json(document.strings(unsigned(-1)))},
            {"images", images}};
}

void print_strings(const CStorageDoc::string_table& strings, const char* indent)
{
    constexpr std::size_t shown = 100;
    for (const auto& [key, text] : strings) {
        std::string line = text.substr(0, text.find_first_of("\r\n"));
        if (line.size() > shown) line = base::valid_utf8(line.substr(0, shown));
        std::cout << indent << key << ": " << line << (line.size() < text.size() ? " …" : "") << '\n';
    }
}

std::string axis_text(const VLAxis& axis)
{
    return "start " + base::general(axis.start) + ", step " + base::general(axis.scale) + " " + axis.get_units();
}

void print_axes(const char* what, const VLAxesContainer& axes)
{
    for (unsigned i = 0; i < axes.get_axes_number(); ++i)
        std::cout << "    " << what << ": " << axis_text(axes.get_axis(i)) << '\n';
}

void print_ranges(const CStorageDoc& document, unsigned image)
{
    const SPMDataStream& stream = document.getImage(image);
    const auto& names = stream.subimage_names();
    const VLAxis& values = document.getAxis(image, 0, unsigned(-1));
    for (unsigned sub = 0; sub < document.getSubImagesNumber(image); ++sub) {
        CMinMaxInfo range;
        if (stream.array_type() == SPM_ARRAY_INT16) document.getMinMaxInfo(image, range, sub);
        std::cout << "    sub-image " << sub;
        if (sub < names.size()) std::cout << " \"" << names[sub].c_str() << '"';
        if (stream.array_type() == SPM_ARRAY_INT16)
            std::cout << ": " << base::general(values.at(range.minimum)) << " to "
                      << base::general(values.at(range.maximum)) << " " << values.get_units() << " (raw "
                      << range.minimum << " to " << range.maximum << ")";
        std::cout << '\n';
    }
}

void print_image(const CStorageDoc& document, unsigned image, bool withStrings)
{
    const SPMDataStream& stream = document.getImage(image);
    std::cout << "  image " << image << ": " << stream.get_name() << " \"" << stream.get_description() << "\", ";
    for (unsigned i = 0; i < stream.get_dimensions_number(); ++i)
        std::cout << (i ? " x " : "") << stream.get_dimension(i).length;
    std::cout << " " << array_type_keyword(stream.array_type()) << '\n';
    for (unsigned i = 0; i < stream.get_dimensions_number(); ++i)
        print_axes(base::formatted("axis %u", i).c_str(), stream.get_dimension(i));
    print_axes("values", stream.values);
    if (const char* parameter = stream.get_parameter_stream())
        std::cout << "    measured against: " << parameter << '\n';
    for (const smart_string& name : stream.dependent_vars()) std::cout << "    depends: " << name.c_str() << '\n';
    print_ranges(document, image);
    if (withStrings) print_strings(document.strings(image), "    | ");
}

void print_document(const CStorageDoc& document, const std::wstring& path, bool withStrings)
{
    std::cout << base::narrow(path) << "\n  " << format_name(document.fileType) << ", " << document.getFileSize()
              << " bytes, " << document.getImagesNumber() << " image" << (document.getImagesNumber() == 1 ? "" : "s")
              << '\n';
    if (withStrings) print_strings(document.strings(unsigned(-1)), "  | ");
    for (unsigned i = 0; i < document.getImagesNumber(); ++i) print_image(document, i, withStrings);
}

struct info_options {
    std::vector<std::string> files;
    bool asJson = false, withStrings = false;
};

int run(const info_options& options)
{
    session call;
    call.setFiles(options.files);
    json files = json::array();
    call.forEachDocument(
        [&](CStorageDoc& document, const std::wstring& path) {
            if (options.asJson)
                files.push_back(document_json(document, path));
            else
                print_document(document, path, options.withStrings);
        },
        [&](const std::wstring& path, const std::string& reason) {
            files.push_back({{"path", base::narrow(path)}, {"error", reason}});
        });
    if (options.asJson) std::cout << json{{"files", files}}.dump(2, ' ', false, json::error_handler_t::replace) << '\n';
    return call.status();
}

} // namespace

std::string format_name(SupportedFileTypes type)
{
    for (const formats::format_row& row : formats::format_table()) {
        if (row.type != type) continue;
        const std::string name = row.name;
        const std::size_t suffix = name.size() < 6 ? 0 : name.size() - 6;
        return base::equal_ignoring_case(name.substr(suffix), " files") ? name.substr(0, suffix) : name;
    }
    return "unknown";
}

void add_info(CLI::App& app, int& status)
{
    auto options = std::make_shared<info_options>();
    CLI::App* command = app.add_subcommand("info", "Tell what files hold");
    command->add_option("files", options->files, "Files to open")->required();
    command->add_flag("--json", options->asJson, "Print JSON");
    command->add_flag("--strings", options->withStrings, "Print the text parameters too");
    command->callback([options, &status] { status = run(*options); });
}

} // namespace cli
