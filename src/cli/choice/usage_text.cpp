#include "cli/choice/usage_text.h"

#include "base/text.h"
#include "cli/choice/nearest_name.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <vector>

// The parser of the command line tells the kind of a failure by its class, and the option in its sentence.

namespace vldv::cli {

namespace {

const CLI::App& command_of(const CLI::App& app)
{
    const std::vector<CLI::App*> used = app.get_subcommands();
    return used.empty() ? app : *used.front();
}

std::string name_of(const CLI::App& app, const CLI::App& command)
{
    return &command == &app ? "vldv" : "vldv " + command.get_name();
}

std::vector<std::string> option_names(const CLI::App& command)
{
    std::vector<std::string> names;
    for (const CLI::Option* const option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
        for (const std::string& name : option->get_snames()) names.push_back("-" + name);
    }
    return names;
}

/// Empty where no option is like the word: at most every third letter may differ.
std::string like_option(const std::string& word, const CLI::App& command)
{
    std::string nearest = nearest_name(word, option_names(command));
    const int letters = static_cast<int>(std::min(word.size(), nearest.size()));
    const bool isLike = nearest.starts_with(word) || 3 * edit_distance(word, nearest) <= letters;
    return isLike ? nearest : std::string();
}

/// What is said of the first word that nothing takes.
std::string extra_text(const CLI::App& command)
{
    const std::vector<std::string> extras = command.remaining();
    if (extras.empty()) return " cannot use all of these words";
    const auto option = std::ranges::find_if(extras, [](const std::string& word) { return word.starts_with('-'); });
    if (option == extras.end()) return " takes no further word: \"" + extras.back() + '"';
    const std::string word = option->substr(0, option->find('='));
    const std::string nearest = like_option(word, command);
    return " has no option " + word + (nearest.empty() ? "" : "; the nearest is " + nearest);
}

/// "output is required", or of a group of options "Requires at most 1 options be given from [--a,--b]".
std::string required_text(const std::string& told, const CLI::App& command)
{
    if (const std::size_t open = told.find('['); open != std::string::npos) {
        std::string names = told.substr(open + 1, told.rfind(']') - open - 1);
        for (std::size_t at = 0; (at = names.find(',', at)) != std::string::npos; at += 2) names.insert(at + 1, " ");
        return " takes one of " + names + ", not several";
    }
    const std::string name = told.substr(0, told.find(' '));
    if (name.starts_with('-')) return " needs " + name;
    const auto takesMany = [&](const CLI::Option* option) {
        return option->get_single_name() == name && option->get_items_expected_max() > 1;
    };
    const auto options = command.get_options();
    return std::ranges::any_of(options, takesMany) ? " needs a file or more" : " needs a " + name;
}

/// "--bars: 1 required UINT missing" or "--sub: At Most 1 required but received 2".
std::string mismatch_text(const std::string& told)
{
    const std::string name = told.substr(0, told.find(':'));
    if (told.ends_with("missing")) return ": " + name + " needs a value";
    return ": " + name +
           (told.find("At Most 1") != std::string::npos ? " may be given once only" : " has another count of values");
}

std::string sentence_of(const CLI::Error& problem, const CLI::App& app, const CLI::App& command)
{
    const std::string told = problem.what();
    if (dynamic_cast<const CLI::ExtrasError*>(&problem)) return extra_text(command);
    if (dynamic_cast<const CLI::RequiredError*>(&problem)) {
        if (&command != &app) return required_text(told, command);
        return command.remaining().empty() ? " needs a sub-command" : extra_text(command);
    }
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&problem)) return mismatch_text(told);
    const std::string own = command.get_name() + ": ";
    return ": " + (told.starts_with(own) ? told.substr(own.size()) : told);
}

} // namespace

std::string usage_text(const CLI::App& app, const CLI::Error& problem)
{
    const CLI::App& command = command_of(app);
    const std::string name = name_of(app, command);
    return name + sentence_of(problem, app, command) + "\nRun " + name + " --help for what it takes.\n";
}

} // namespace vldv::cli
