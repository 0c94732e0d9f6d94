#include "base/text.h"
#include "base/variables/expression.h"
#include "base/variables/expression_tokens.h"

#include <algorithm>
#include <array>

namespace vldv::base {

namespace {

using step_kind = expression_step::kind;
using token_kind = expression_token::kind;

// A text nested deeper or longer than anyone writes is refused before it exhausts the stack.
constexpr unsigned maxDepth = 100;
constexpr std::size_t maxSteps = 2000;

struct binary_operator {
    std::string_view sign;
    step_kind what;
    int priority; ///< higher binds closer
};

constexpr std::array<binary_operator, 15> binaryOperators = {{
    {"||", step_kind::logicalOr, 1},
    {"&&", step_kind::logicalAnd, 2},
    {"==", step_kind::equal, 3},
    {"!=", step_kind::unequal, 3},
    {"<", step_kind::less, 4},
    {"<=", step_kind::lessEqual, 4},
    {">", step_kind::greater, 4},
    {">=", step_kind::greaterEqual, 4},
    {"<<", step_kind::shiftLeft, 5},
    {">>", step_kind::shiftRight, 5},
    {"+", step_kind::add, 6},
    {"-", step_kind::subtract, 6},
    {"*", step_kind::multiply, 7},
    {"/", step_kind::divide, 7},
    {"%", step_kind::remainder, 7},
}};

struct function_row {
    std::string_view name;
    step_kind what;
    unsigned fewest, most; ///< arguments
};

constexpr std::array<function_row, 10> functions = {{
    {"if", step_kind::choose, 3, 3},
    {"min", step_kind::minimum, 2, 2},
    {"max", step_kind::maximum, 2, 2},
    {"ln", step_kind::logarithm, 1, 1},
    {"exp", step_kind::exponential, 1, 1},
    {"hex", step_kind::hexadecimal, 1, 1},
    {"filepath", step_kind::filePath, 1, 2},
    {"strlistval", step_kind::listEntry, 2, 2},
    {"font_list", step_kind::fontList, 1, 1},
    {"call_function", step_kind::callFunction, 1, 5},
}};

struct syntax_error {
    std::size_t column;
    std::string reason;
};

} // namespace

std::string excerpt(std::string_view text)
{
    constexpr std::size_t most = 80;
    return text.size() <= most ? std::string(text) : valid_utf8(std::string(text.substr(0, most))) + "…";
}

/// Recursive descent with the priorities of C; "^" is power and binds closer than any sign in front of it.
class expression_parser {
public:
    explicit expression_parser(std::string_view text) : tokens(text) {}

    expression parse()
    {
        if (tokens.current().what == token_kind::end) fail("empty expression");
        out.result = binary(1);
        if (tokens.current().what != token_kind::end) fail("unexpected \"" + excerpt(tokens.current().text) + "\"");
        return std::move(out);
    }

private:
    [[noreturn]] void fail(std::string reason) const
    {
        if (tokens.current().what == token_kind::broken)
            reason = "cannot read \"" + excerpt(tokens.current().text) + "\"";
        throw syntax_error{tokens.current().column + 1, std::move(reason)};
    }

    // A step is added behind the steps of its operands, and knows them by their numbers: the steps are a tree in one
    // array, with the result as the last one added, which copies as a value and needs no pointers.
    unsigned add(expression_step step, std::span<const unsigned> operands = {})
    {
        if (out.steps.size() == maxSteps) fail("too long");
        step.first = static_cast<unsigned>(out.operands.size());
        step.count = static_cast<unsigned>(operands.size());
        out.operands.insert(out.operands.end(), operands.begin(), operands.end());
        out.steps.push_back(step);
        return static_cast<unsigned>(out.steps.size() - 1);
    }

    void take(std::string_view sign)
    {
        if (!tokens.isSign(sign)) fail("\"" + std::string(sign) + "\" expected");
        tokens.advance();
    }

    const binary_operator* currentOperator() const
    {
        if (tokens.current().what != token_kind::sign) return nullptr;
        const auto found = std::ranges::find(binaryOperators, tokens.current().text, &binary_operator::sign);
        return found == binaryOperators.end() ? nullptr : &*found;
    }

    // Precedence climbing: the operand on the right takes only operators that bind closer, so that operators of one
    // priority group from the left. One function does for all priorities of the table.
    unsigned binary(int priority)
    {
        unsigned left = unary();
        while (const binary_operator* operation = currentOperator()) {
            if (operation->priority < priority) break;
            tokens.advance();
            const unsigned operands[] = {left, binary(operation->priority + 1)};
            left = add({.what = operation->what}, operands);
        }
        return left;
    }

    unsigned unary()
    {
        // Each level of parentheses, arguments, signs or powers passes here, so that this one count limits them all.
        if (++depth > maxDepth) fail("nested too deeply");
        unsigned step;
        if (tokens.isSign("-") || tokens.isSign("!")) {
            const step_kind what = tokens.isSign("-") ? step_kind::negative : step_kind::logicalNot;
            tokens.advance();
            const unsigned operand[] = {unary()};
            step = add({.what = what}, operand);
        } else if (tokens.isSign("+")) {
            tokens.advance();
            step = unary();
        } else {
            step = power();
        }
        --depth;
        return step;
    }

    unsigned power()
    {
        const unsigned base = primary();
        if (!tokens.isSign("^")) return base;
        tokens.advance();
        // The exponent is read with its sign, and may be a power itself: "2^-1" is a half, "2^3^2" is 2^9, "-2^2" is
        // -4.
        const unsigned operands[] = {base, unary()};
        return add({.what = step_kind::power}, operands);
    }

    unsigned primary()
    {
        const expression_token token = tokens.current();
        switch (token.what) {
        case token_kind::number:
            tokens.advance();
            return add({.what = step_kind::number, .number = token.number});
        case token_kind::text:
            tokens.advance();
            out.texts.emplace_back(token.text);
            return add({.what = step_kind::text, .index = static_cast<unsigned>(out.texts.size() - 1)});
        case token_kind::own:
            tokens.advance();
            return add({.what = step_kind::own});
        case token_kind::name:
            tokens.advance();
            return add({.what = step_kind::name, .index = nameIndex(token.text)});
        case token_kind::word:
            return word(token.text);
        default:
            break;
        }
        if (!tokens.isSign("(")) fail("a value is missing");
        tokens.advance();
        const unsigned inside = binary(1);
        take(")");
        return inside;
    }

    unsigned nameIndex(std::string_view name)
    {
        const auto found = std::ranges::find(out.nameTable, name);
        if (found != out.nameTable.end()) return static_cast<unsigned>(found - out.nameTable.begin());
        out.nameTable.emplace_back(name);
        return static_cast<unsigned>(out.nameTable.size() - 1);
    }

    unsigned word(std::string_view name)
    {
        if (name == "true" || name == "false") {
            tokens.advance();
            return add({.what = step_kind::number, .number = name == "true" ? 1.0 : 0.0});
        }
        const auto function = std::ranges::find(functions, name, &function_row::name);
        if (function == functions.end()) fail("unknown function \"" + std::string(name) + "\"");
        tokens.advance();
        take("(");
        std::vector<unsigned> operands = {binary(1)};
        while (tokens.isSign(",")) {
            tokens.advance();
            operands.push_back(binary(1));
        }
        take(")");
        if (operands.size() < function->fewest || operands.size() > function->most)
            fail("wrong number of arguments of \"" + std::string(name) + "\"");
        return add({.what = function->what}, operands);
    }

    expression_tokens tokens;
    expression out;
    unsigned depth = 0;
};

std::optional<expression> expression::compile(std::string_view text, std::string* problem)
{
    try {
        return expression_parser(text).parse();
    } catch (const syntax_error& error) {
        if (problem) *problem = formatted("column %zu: ", error.column) + error.reason;
        return std::nullopt;
    }
}

bool expression::callsFunctions() const noexcept
{
    return std::ranges::any_of(steps, [](const expression_step& step) { return step.what == step_kind::callFunction; });
}

std::optional<std::string_view> expression::constantText(const expression_step& step, unsigned i) const noexcept
{
    if (i >= step.count || operand(step, i).what != step_kind::text) return std::nullopt;
    return texts[operand(step, i).index];
}

std::optional<double> expression::constantNumber(const expression_step& step, unsigned i) const noexcept
{
    if (i >= step.count || operand(step, i).what != step_kind::number) return std::nullopt;
    return operand(step, i).number;
}

bool expression::isOwnValue(const expression_step& step, unsigned i) const noexcept
{
    return i < step.count && operand(step, i).what == step_kind::own;
}

} // namespace vldv::base
