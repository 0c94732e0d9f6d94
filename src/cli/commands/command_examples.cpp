// vldv examples: writes the bundled example documents.
#include "base/text.h"
#include "cli/commands.h"
#include "cli/output/existing_container.h"
#include "cli/output/terminal.h"
#include "cli/session.h"
#include "document/examples/examples.h"
#include "platform/files/paths.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <utility>

namespace vldv::cli {

namespace {

namespace fs = std::filesystem;

struct example_options {
    std::string folder;
    bool replaces = false;
};

void write(document::example each, const fs::path& path, bool replaces, session& call)
{
    CStorageDoc document;
    const std::string shown = path_line(path.native());
    if (!document.addRecording(each.content)) return call.report(platform::to_wide(path), document.getReadError());
    const existing_file there = replaces ? existing_file::none : look_for_existing(path, document);
    if (there != existing_file::none && there != existing_file::same) {
        std::cerr << shown << ": stays as it is: it " << what_is(there) << "; --force replaces it\n";
        return;
    }
    if (const std::string reason = call.save(document, platform::to_wide(path)); !reason.empty())
        return call.report(platform::to_wide(path), reason);
    std::cout << shown << ": " << each.title << '\n';
}

int run(const example_options& options)
{
    session call;
    call.letReplace(true);
    const fs::path target = platform::to_path(platform::full_path(base::widen(options.folder)));
    std::error_code error;
    fs::create_directories(target, error);
    if (error) {
        call.report(platform::to_wide(target), error.message());
        return call.status();
    }
    for (document::example& each : document::make_examples()) {
        const fs::path path = target / each.fileName;
        write(std::move(each), path, options.replaces, call);
    }
    return call.status();
}

} // namespace

void add_examples(CLI::App& app, int& status)
{
    auto options = std::make_shared<example_options>();
    CLI::App* command = app.add_subcommand("examples", "Write the bundled example files");
    command->add_option("folder", options->folder, "Where to put them")->required();
    command->add_flag("--force", options->replaces, "Replace files of their names that hold something else");
    command->callback([options, &status] { status = run(*options); });
}

} // namespace vldv::cli
