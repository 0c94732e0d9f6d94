#pragma once
namespace CLI {
class App;
}

namespace vldv::cli {

/// Lets the options of a sub-command that name files understand what a shell leaves in them: "~" at the beginning, as of
/// --to=~/results, is the home folder, and /dev/stdout is standard output like "-".
void understand_paths(CLI::App& command);

} // namespace vldv::cli
