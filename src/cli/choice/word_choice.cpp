#include "cli/choice/word_choice.h"

#include "base/text.h"

#include <CLI/CLI.hpp>

namespace vldv::cli {

namespace {

/// "fixed, auto, line or planefit"
std::string listed(const std::vector<std::pair<std::string, std::string>>& words)
{
    std::string list;
    for (std::size_t i = 0; i < words.size(); ++i)
        list += (i == 0 ? "" : i + 1 < words.size() ? ", " : " or ") + words[i].first;
    return list;
}

} // namespace

void take_words(CLI::Option& option, const std::vector<std::string>& words)
{
    std::vector<std::pair<std::string, std::string>> texts;
    for (const std::string& word : words) texts.emplace_back(word, word);
    take_words_for(option, texts);
}

void take_words_for(CLI::Option& option, const std::vector<std::pair<std::string, std::string>>& words)
{
    const auto put = [words](std::string& text) {
        for (const auto& [word, meaning] : words)
            if (base::equal_ignoring_case(text, word)) {
                text = meaning;
                return std::string();
            }
        return "expected " + listed(words) + ", not \"" + text + '"';
    };
    option.transform(CLI::Validator(put, listed(words)))->type_name("TEXT");
}

} // namespace vldv::cli
