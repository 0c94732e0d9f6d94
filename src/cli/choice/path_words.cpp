#include "cli/choice/path_words.h"

#include "base/text.h"
#include "cli/output/standard_streams.h"
#include "platform/files/paths.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string>

namespace vldv::cli {

namespace {

constexpr const char* fileOptions[] = {"csv", "map", "mask", "output", "palette", "spectrum", "to"};
constexpr const char* outputDevices[] = {"/dev/stdout", "/dev/fd/1", "/proc/self/fd/1"};

std::string understood(const std::string& word)
{
    if (std::ranges::find(outputDevices, word) != std::end(outputDevices)) return standardStream;
    return word.starts_with('~') ? base::narrow(platform::expanded_home(base::widen(word))) : word;
}

} // namespace

void understand_paths(CLI::App& command)
{
    const auto namesFile = [](const CLI::Option& option) {
        return std::ranges::any_of(fileOptions, [&](const char* name) { return option.check_lname(name); });
    };
    for (CLI::Option* const option : command.get_options())
        if (namesFile(*option)) option->transform([](const std::string& word) { return understood(word); });
}

} // namespace vldv::cli
