#pragma once
#include <string>
#include <string_view>

namespace vldv::base {

/// A piece of an expression's text.
struct expression_token {
    enum class kind { end, number, text, own, name, word, sign, broken };
    kind what = kind::end;
    std::string_view text; ///< of a name without "#", of a text without quotes; a sign's one or two characters
    double number = 0.0;
    std::size_t column = 0; ///< where it begins, from 0
};

/// Cuts an expression into pieces.
class expression_tokens {
public:
    explicit expression_tokens(std::string_view text_) : text(text_) { advance(); }

    const expression_token& current() const noexcept { return token; }
    void advance();
    bool isSign(std::string_view sign) const noexcept
    {
        return token.what == expression_token::kind::sign && token.text == sign;
    }

private:
    std::string_view text;
    std::size_t position = 0;
    expression_token token;
};

} // namespace vldv::base
