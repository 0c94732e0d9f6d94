// vldv options: a table of option declarations, settled and shown, for those who write one.
#include "base/text.h"
#include "base/variables/declaration.h"
#include "base/variables/option_display.h"
#include "cli/choice/option_table.h"
#include "cli/commands.h"
#include "cli/output/aligned.h"
#include "cli/output/file_reports.h"
#include "cli/session.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>

namespace vldv::cli {

namespace {

using json = nlohmann::ordered_json;

struct options_options {
    std::string file;
    std::vector<std::string> settings; ///< "name=value"
    bool asJson = false;
};

json limit_json(const SPMVar& variable, double limit)
{
    const bool hasLimits = variable.type == SPM_VAR_DOUBLE || variable.type == SPM_VAR_INT;
    return hasLimits && std::isfinite(limit) ? json(limit) : json(nullptr);
}

json items_json(const SPMVar& variable)
{
    json items = json::array();
    for (unsigned i = 0; i < variable.get_enum_size(); ++i)
        items.push_back({{"key", variable.get_enum_key(i)}, {"label", variable.get_enum_label(i)}});
    return items;
}

const char* kind_of(const SPMVar& variable)
{
    return base::is_heading(variable) ? "heading" : base::type_keyword(variable.type);
}

json variable_json(const SPMVarList& list, const SPMVar& variable)
{
    const bool hasStep = variable.type == SPM_VAR_DOUBLE && variable.limits.number.step != 0.0;
    return {{"name", variable.get_name()},
            {"label", variable.get_description()},
            {"type", kind_of(variable)},
            {"value", variable.as_string().c_str()},
            {"shown", base::shown_text(list, variable)},
            {"minimum", limit_json(variable, variable.limits.number.minimum)},
            {"maximum", limit_json(variable, variable.limits.number.maximum)},
            {"step", hasStep ? json(variable.limits.number.step) : json(nullptr)},
            {"items", items_json(variable)}};
}

void print_table(const SPMVarList& list)
{
    std::vector<std::vector<std::string>> rows = {{"name", "label", "type", "value", "shown"}};
    for (const SPMVar& variable : list.all())
        rows.push_back({variable.get_name(), variable.get_description(), kind_of(variable),
                        variable.as_string().c_str(), base::shown_text(list, variable)});
    std::cout << aligned(rows);
}

void apply(SPMVarList& list, const std::string& setting, const std::function<void(const std::string&)>& complain)
{
    const std::size_t equals = setting.find('=');
    const std::string name = setting.substr(0, equals);
    if (equals == std::string::npos)
        complain("--set " + setting + ": name=value expected");
    else if (list.get_var_i(name) == unsigned(-1))
        complain("--set " + setting + ": there is no variable \"" + name + "\"");
    else if (!list.set_var(name.c_str(), setting.c_str() + equals + 1))
        complain("--set " + setting + ": no value of \"" + name + "\"");
}

int run(const options_options& options)
{
    session call;
    call.setFile(options.file);
    const std::wstring& path = call.files().front();
    const auto complain = [&](const std::string& problem) { call.report(path, problem); };
    const std::filesystem::path file = call.readable(path);
    errno = 0;
    std::ifstream in(file, std::ios::binary);
    const option_table table = read_option_table(in);
    if (!in.is_open() || in.bad()) {
        complain(errno ? std::strerror(errno) : "cannot be read");
        return call.status();
    }
    for (const std::string& problem : table.problems) complain(problem);
    SPMVarList list;
    list.set_variables(table.variables.data(), static_cast<unsigned>(table.variables.size()));
    list.batch([&] {
        for (const std::string& setting : options.settings) apply(list, setting, complain);
    });
    if (options.asJson) {
        json variables = json::array();
        for (const SPMVar& variable : list.all()) variables.push_back(variable_json(list, variable));
        print_json({{"variables", variables}});
    } else {
        print_table(list);
    }
    return call.status();
}

} // namespace

void add_options(CLI::App& app, int& status)
{
    auto options = std::make_shared<options_options>();
    CLI::App* command =
        app.add_subcommand("options", "Check a table of option declarations and print it settled and shown");
    command->add_option("file", options->file, "Text file: a declaration a line, its default behind a tab")->required();
    command->add_option("--set", options->settings, "Set a variable, name=value; may be repeated")
        ->allow_extra_args(false);
    command->add_flag("--json", options->asJson, "Print JSON");
    command->callback([options, &status] { status = run(*options); });
}

} // namespace vldv::cli
