// vldv convert: any readable file to the native container.
#include "base/text.h"
#include "cli/commands.h"
#include "cli/output/output_names.h"
#include "cli/output/standard_streams.h"
#include "cli/output/terminal.h"
#include "cli/session.h"
#include "platform/files/paths.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <stdexcept>

namespace vldv::cli {

namespace {

namespace fs = std::filesystem;

struct convert_options {
    std::vector<std::string> files;
    std::string target;
    bool replaces = false;
};

bool is_container_name(const fs::path& path) { return base::equal_ignoring_case(path.extension().native(), ".spm"); }

/// The name of the output: as given, or in a folder the input's name, foreign ones with ".spm" appended.
fs::path output_path(const fs::path& target, bool isFolder, const CStorageDoc& document, const std::wstring& input)
{
    if (!isFolder) return target;
    fs::path name = platform::to_path(input).filename();
    if (document.fileType != FILE_SPMX || !is_container_name(name)) name += ".spm";
    return target / name;
}

/// Only one file goes to standard output.
int run_to_stream(session& call)
{
    call.forEachDocument([&](CStorageDoc& document, const std::wstring&) {
        if (call.files().size() > 1) throw std::runtime_error("only one file can go to standard output");
        standard_output_archive container;
        document.Serialize(container);
    });
    return call.status();
}

/// Whether the target names neither a container nor a folder, as a name with another extension does.
bool is_other_name(const fs::path& target, const std::string& text)
{
    std::error_code ignored;
    return target.has_extension() && !is_container_name(target) && !text.ends_with('/') &&
           !fs::is_directory(target, ignored);
}

int run(const convert_options& options)
{
    session call;
    call.letReplace(options.replaces);
    call.setFiles(options.files, {options.target});
    if (options.target == standardStream) return run_to_stream(call);
    const fs::path target = platform::to_path(platform::full_path(base::widen(options.target)));
    if (is_other_name(target, options.target)) {
        call.report(platform::to_wide(target),
                    "is neither a name of a container (.spm) nor of a folder, which would end "
                    "with a slash; pictures are written by vldv render");
        return badUsage;
    }
    std::error_code error, ignored; // a target that is not there yet is no error
    const bool isFolder = fs::is_directory(target, ignored) || !is_container_name(target);
    if (isFolder) fs::create_directories(target, error);
    if (error) {
        call.report(platform::to_wide(target), error.message());
        return call.status();
    }
    call.forEachDocument([&](CStorageDoc& document, const std::wstring& path) {
        const fs::path output = output_path(isFolder ? target / call.placeBelow() : target, isFolder, document, path);
        if (call.isFoundItself(output)) throw nothing_to_treat("it is the container that it would become");
        if (isFolder) make_folder(output.parent_path());
        if (const std::string reason = call.save(document, platform::to_wide(output)); !reason.empty())
            throw std::runtime_error(reason);
        std::cout << path_line(output.native()) << '\n';
    });
    return call.status();
}

} // namespace

void add_convert(CLI::App& app, int& status)
{
    auto options = std::make_shared<convert_options>();
    CLI::App* command = app.add_subcommand("convert", "Write files as native containers");
    command->add_option("files", options->files, "Files to convert")->required();
    command->add_option("-o,--to", options->target, "Folder, or name of one .spm file; - is standard output")
        ->required();
    command->add_flag("--force", options->replaces, "Replace containers that hold something else");
    command->callback([options, &status] { status = run(*options); });
}

} // namespace vldv::cli
