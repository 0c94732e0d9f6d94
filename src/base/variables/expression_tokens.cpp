#include "base/variables/expression_tokens.h"

#include "base/text.h"

#include <array>

namespace vldv::base {

namespace {

constexpr std::array<std::string_view, 8> twoCharacterSigns = {"<<", ">>", "<=", ">=", "==", "!=", "&&", "||"};
constexpr std::string_view signs = "+-*/%^<>!(),";

bool is_digit(char c) noexcept { return c >= '0' && c <= '9'; }
bool is_letter(char c) noexcept { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool is_word(char c) noexcept { return is_letter(c) || is_digit(c) || c == '.'; }

std::string_view word_at(std::string_view text, std::size_t from) noexcept
{
    std::size_t end = from;
    while (end < text.size() && is_word(text[end])) ++end;
    return text.substr(from, end - from);
}

} // namespace

void expression_tokens::advance()
{
    using kind = expression_token::kind;
    while (position < text.size() && static_cast<unsigned char>(text[position]) <= ' ') ++position;
    token = {kind::end, {}, 0.0, position};
    if (position == text.size()) return;
    const std::string_view rest = text.substr(position);
    const char c = rest.front();
    const auto take = [&](kind what, std::string_view content, std::size_t used) {
        token.what = what;
        token.text = content;
        position += used;
    };
    if (is_digit(c) || (c == '.' && rest.size() > 1 && is_digit(rest[1]))) {
        std::size_t used = 0;
        const auto number = leading_number(rest, &used);
        token.number = number.value_or(0.0);
        return take(number ? kind::number : kind::broken, rest.substr(0, used), used);
    }
    if (is_letter(c)) {
        const std::string_view word = word_at(text, position);
        return take(kind::word, word, word.size());
    }
    if (rest.starts_with("##")) return take(kind::own, rest.substr(0, 2), 2);
    if (c == '#') {
        const std::string_view name = word_at(text, position + 1);
        return take(name.empty() ? kind::broken : kind::name, name, name.size() + 1);
    }
    if (c == '"') {
        const std::size_t close = rest.find('"', 1);
        if (close == std::string_view::npos) return take(kind::broken, rest, rest.size());
        return take(kind::text, rest.substr(1, close - 1), close + 1);
    }
    for (const std::string_view sign : twoCharacterSigns)
        if (rest.starts_with(sign)) return take(kind::sign, rest.substr(0, 2), 2);
    take(signs.find(c) != std::string_view::npos ? kind::sign : kind::broken, rest.substr(0, 1), 1);
}

} // namespace vldv::base
