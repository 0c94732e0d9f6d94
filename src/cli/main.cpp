// vldv: the library for scripts and batches.
#include "cli/commands.h"
#include "cli/session.h"

#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <iostream>

int main(int count, char** arguments)
try {
    // A full quota or a closed pipe is an error of the write that meets it, told like any other.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    CLI::App app("vldv opens what a scanning-probe microscope recorded, tells what it holds and takes it away.");
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
    try {
        app.parse(count, arguments);
    } catch (const CLI::ParseError& problem) {
        return app.exit(problem) == 0 ? cli::allDone : cli::badUsage;
    }
    std::cout.flush();
    if (std::cout) return status;
    std::cerr << "standard output could not be written\n";
    return cli::someFailed;
} catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return cli::someFailed;
}
