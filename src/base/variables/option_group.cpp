#include "base/variables/option_group.h"

#include "base/text.h"

#include <algorithm>
#include <vector>

namespace vldv::base {

namespace {

bool is_upper(char c) { return c >= 'A' && c <= 'Z'; }

/// "z_scale" and "FullLegend" in words: "z scale", "full legend".
std::string words_of(std::string_view part)
{
    std::string words;
    for (std::size_t i = 0; i < part.size(); ++i) {
        if (i > 0 && is_upper(part[i]) && !is_upper(part[i - 1])) words += ' ';
        words += part[i] == '_' ? ' ' : part[i];
    }
    return lower_ascii(words);
}

bool holds_words(std::string_view label, std::string_view words)
{
    const std::string lower = lower_ascii(label);
    const std::vector<std::string_view> known = split(lower, ' ');
    return std::ranges::all_of(split(words, ' '),
                               [&](std::string_view word) { return std::ranges::find(known, word) != known.end(); });
}

std::string capitalised(std::string text)
{
    if (!text.empty() && text[0] >= 'a' && text[0] <= 'z') text[0] = static_cast<char>(text[0] - 'a' + 'A');
    return text;
}

/// The group tells the rows of a list apart: not all of them are in it.
bool tells_apart(const SPMVarList& list, std::string_view group)
{
    const std::string begin = std::string(group) + '.';
    return !std::ranges::all_of(list.all(), [&begin](const SPMVar& each) {
        return !*each.get_description() || std::string_view(each.get_name()).starts_with(begin);
    });
}

/// Names of the groups around a variable, the outermost first.
std::vector<std::string> groups_of(const SPMVarList& list, std::string_view name, std::string_view label)
{
    std::vector<std::string> groups;
    bool hasPlainWords = false; // the last one consists of words of the name, and may grow
    std::size_t begin = 0;
    for (std::size_t dot = name.find('.'); dot != std::string_view::npos; dot = name.find('.', begin)) {
        const std::string words = words_of(name.substr(begin, dot - begin));
        const unsigned index = list.get_var_i(name.substr(0, dot));
        begin = dot + 1;
        const bool isVariable = index < list.get_size();
        if (!tells_apart(list, name.substr(0, dot))) continue;
        const SPMVar& group = list.get_var(index);
        if (holds_words(label, words) || (isVariable && group.type == SPM_VAR_NONE)) continue;
        const std::string own = isVariable ? group.get_description() : "";
        if (own.empty() && hasPlainWords)
            groups.back() += ' ' + words;
        else
            groups.push_back(own.empty() ? capitalised(words) : own);
        hasPlainWords = own.empty();
    }
    return groups;
}

} // namespace

std::string grouped_label(const SPMVarList& list, const SPMVar& variable)
{
    const std::string label = variable.get_description();
    std::string out;
    for (const std::string& group : groups_of(list, variable.get_name(), label))
        out += (out.empty() ? "" : ", ") + group;
    return out.empty() ? label : out + ": " + label;
}

} // namespace vldv::base
