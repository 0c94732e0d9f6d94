#include "cli/choice/view_settings.h"

#include "base/text.h"
#include "base/variables/declaration.h"
#include "cli/choice/nearest_name.h"
#include "view/DCView.h"

#include <algorithm>
#include <vector>

namespace vldv::cli {

namespace {

constexpr std::size_t mostNamed = 3;

std::vector<std::string> names_of(const CDCView& view)
{
    std::vector<std::string> names;
    for (const SPMVar& option : view.options.all())
        if (!base::is_heading(option)) names.push_back(option.get_name());
    return names;
}

/// "“line.width”, “grid.line.width” or …", the nearest first.
std::string near_names(const std::string& name, std::vector<std::string> names)
{
    std::string text;
    for (std::size_t i = 0; i < mostNamed && !names.empty(); ++i) {
        const std::string nearest = nearest_name(name, names);
        std::erase(names, nearest);
        text += (i == 0 ? "" : i + 1 < mostNamed ? ", " : " or ") + nearest;
    }
    return text;
}

/// The words of a choice, for a value that is none of them.
std::string words_of(const SPMVar& option)
{
    std::string words;
    if (option.type == SPM_VAR_ENUM)
        for (unsigned i = 0; i < option.get_enum_size(); ++i)
            words += std::string(i == 0 ? "; there are " : ", ") + '"' + option.get_enum_key(i) + '"';
    return words;
}

} // namespace

std::string setting_problem(const std::string& setting)
{
    const std::size_t equals = setting.find('=');
    return equals == std::string::npos || equals == 0 ? "expected NAME=VALUE, not \"" + setting + '"' : "";
}

std::string apply_settings(CDCView& view, std::span<const std::string> settings)
{
    for (const std::string& setting : settings) {
        const std::size_t equals = setting.find('=');
        const std::string name = setting.substr(0, equals), value = setting.substr(equals + 1);
        const std::vector<std::string> names = names_of(view);
        if (std::ranges::find(names, name) == names.end())
            return "--set " + setting + ": the view has no option \"" + name + "\"; near are " +
                   near_names(name, names);
        if (!view.setOption(name.c_str(), value.c_str()))
            return "--set " + setting + ": \"" + value + "\" is no value of \"" + name + '"' +
                   words_of(view.option(name.c_str()));
    }
    return {};
}

} // namespace vldv::cli
