#pragma once
namespace CLI {
class App;
}

namespace vldv::cli {

// Each adds one sub-command, which leaves its exit status in `status` when it has run.
void add_formats(CLI::App& app, int& status);
void add_info(CLI::App& app, int& status);
void add_dump(CLI::App& app, int& status);
void add_convert(CLI::App& app, int& status);
void add_render(CLI::App& app, int& status);
void add_options(CLI::App& app, int& status);
void add_isoline(CLI::App& app, int& status);
void add_stats(CLI::App& app, int& status);
void add_profile(CLI::App& app, int& status);
void add_curve(CLI::App& app, int& status);
void add_force(CLI::App& app, int& status);
void add_histogram(CLI::App& app, int& status);
void add_fourier(CLI::App& app, int& status);
void add_features(CLI::App& app, int& status);
void add_steps(CLI::App& app, int& status);
void add_examples(CLI::App& app, int& status);

} // namespace vldv::cli
