#pragma once
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace CLI {
class Option;
}

namespace vldv::cli {

/// Lets an option take these words alone, in any case of letters. A refusal names them all: "expected power or
/// magnitude, not "amplitude"".
void take_words(CLI::Option& option, const std::vector<std::string>& words);

/// Words with the text that the option is given for each.
void take_words_for(CLI::Option& option, const std::vector<std::pair<std::string, std::string>>& words);

/// Words with the number or enumerator that each stands for.
template <class T>
void take_words(CLI::Option& option, std::initializer_list<std::pair<const char*, T>> words)
{
    std::vector<std::pair<std::string, std::string>> texts;
    for (const auto& [word, value] : words) texts.emplace_back(word, std::to_string(static_cast<int>(value)));
    take_words_for(option, texts);
}

} // namespace vldv::cli
