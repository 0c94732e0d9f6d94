// vldv: the library for scripts and batches.
#include "cli/choice/nearest_name.h"
#include "cli/choice/path_words.h"
#include "cli/choice/usage_text.h"
#include "cli/commands.h"
#include "cli/output/failure_text.h"
#include "cli/output/terminal.h"
#include "cli/session.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <exception>
#include <filesystem>
#include <iostream>
#include <unistd.h>

using namespace vldv;

namespace {

std::vector<std::string> command_names(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
    return names;
}

/// Whether a call begins with a word that is no sub-command; the one that was probably meant is told.
bool is_refused(const CLI::App& app, const std::string& word)
{
    const std::vector<std::string> names = command_names(app);
    if (word.starts_with('-') || std::ranges::find(names, word) != names.end()) return false;
    std::error_code ignored;
    std::cerr << "vldv has no sub-command \"" << word << "\"; "
              << (std::filesystem::exists(word, ignored) ? "vldv info " + word + " tells what the file holds"
                                                         : "the nearest is " + cli::nearest_name(word, names))
              << "\nRun with --help for all of them.\n";
    return true;
}

/// "help" and "help NAME" as --help is asked for; other calls as they are.
std::vector<std::string> as_help(const CLI::App& app, std::vector<std::string> words)
{
    if (words.empty() || words.front() != "help") return words;
    const std::vector<std::string> names = command_names(app);
    const bool isOfOne = words.size() > 1 && std::ranges::find(names, words[1]) != names.end();
    return isOfOne ? std::vector<std::string>{words[1], "--help"} : std::vector<std::string>{"--help"};
}

/// What stands in the place of a value and is none: an empty word, as of a variable of a script that is not set, or the
/// next option where the value was forgotten.
void refuse_missing_values(CLI::App& command)
{
    const auto check = [&command](const std::string& word) -> std::string {
        if (word.empty()) return "expected a word, not \"\"";
        const bool isOption = word.starts_with('-') && command.get_option_no_throw(word) != nullptr;
        return isOption ? "needs a value before " + word : "";
    };
    for (CLI::Option* const option : command.get_options())
        if (option->get_items_expected_max() > 0) option->check(check);
}

} // namespace

int main(int count, char** arguments)
try {
    // A full quota is an error of the write that meets it, told like any other. Whoever closes a pipe has seen enough:
    // the program ends without a word, also when its parent ignores that signal.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_DFL);
    const cli::terminal_guard output(std::cout, isatty(STDOUT_FILENO) == 1);
    const cli::terminal_guard messages(std::cerr, isatty(STDERR_FILENO) == 1);
    CLI::App app("vldv opens what a scanning-probe microscope recorded, tells what it holds and takes it away.");
    app.set_version_flag("--version", "vldv " VLDV_VERSION);
    app.name("vldv");
    app.require_subcommand(1);
    int status = cli::allDone;
    cli::add_info(app, status);
    cli::add_dump(app, status);
    cli::add_convert(app, status);
    cli::add_render(app, status);
    cli::add_options(app, status);
    cli::add_isoline(app, status);
    cli::add_stats(app, status);
    cli::add_profile(app, status);
    cli::add_curve(app, status);
    cli::add_force(app, status);
    cli::add_histogram(app, status);
    cli::add_fourier(app, status);
    cli::add_features(app, status);
    cli::add_steps(app, status);
    cli::add_examples(app, status);
    cli::add_formats(app, status);
    const std::vector<std::string> words = as_help(app, {arguments + 1, arguments + count});
    if (!words.empty() && is_refused(app, words.front())) return cli::badUsage;
    for (CLI::App* const each : app.get_subcommands({})) {
        each->preparse_callback([each](std::size_t) { cli::set_operation(each->get_name()); });
        cli::understand_paths(*each);
        refuse_missing_values(*each);
    }
    app.failure_message([](const CLI::App* parsed, const CLI::Error& problem) {
        return cli::visible_lines(cli::usage_text(*parsed, problem));
    });
    try {
        app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
    } catch (const CLI::ParseError& problem) {
        return app.exit(problem) == 0 ? cli::allDone : cli::badUsage;
    }
    std::cout.flush();
    if (std::cout) return status;
    std::cerr << "standard output could not be written\n";
    return cli::someFailed;
} catch (const std::exception& failure) {
    std::cerr << cli::visible_lines(cli::failure_text(failure)) << '\n';
    return cli::someFailed;
}
