// vldv examples: writes the bundled example documents.
#include "cli/commands.h"
#include "cli/session.h"
#include "document/examples.h"

#include "base/text.h"
#include "platform/paths.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>

namespace cli {

namespace {

int run(const std::string& folder)
{
    session call;
    const std::filesystem::path target = platform::to_path(platform::full_path(base::widen(folder)));
    std::error_code error;
    std::filesystem::create_directories(target, error);
    if (error) {
        call.report(platform::to_wide(target), error.message());
        return call.status();
    }
    for (document::example& each : document::make_examples()) {
        CStorageDoc document;
        const std::wstring path = platform::to_wide(target / each.fileName);
        const std::string reason =
            document.addRecording(each.content) ? call.save(document, path) : document.getReadError();
        if (!reason.empty())
            call.report(path, reason);
        else
            std::cout << base::narrow(path) << ": " << each.title << '\n';
    }
    return call.status();
}

} // namespace

void add_examples(CLI::App& app, int& status)
{
    auto folder = std::make_shared<std::string>();
    CLI::App* command = app.add_subcommand("examples", "Write the bundled example files");
    command->add_option("folder", *folder, "Where to put them")->required();
    command->callback([folder, &status] { status = run(*folder); });
}

} // namespace cli
