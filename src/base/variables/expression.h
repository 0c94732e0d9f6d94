#pragma once
#include "base/SPMVar.h"
#include "vldv_api.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vldv::base {

/// A text as messages quote it: its start when it is long. UTF-8.
VLDV_INTERNAL_API std::string excerpt(std::string_view text);

/// What an expression yields: a number, or a text that reads as a number where one is needed (0 when it is none).
struct expression_value {
    double number = 0.0;
    std::string text;
    bool isText = false;

    static expression_value of(double number_) { return {number_, {}, false}; }
    static expression_value of(std::string text_);
    /// Of a variable: the text of a `string`, else its number. An enum gives the number of its item.
    static expression_value of(const SPMVar& variable);
    double asNumber() const noexcept { return number; }
    /// A number as the shortest text that reads back equal.
    std::string asText() const;
};

/// What the names in an expression stand for.
struct expression_inputs {
    expression_value own;                ///< "##"
    std::span<const SPMVar> variables;   ///< of the list
    std::span<const unsigned> positions; ///< of each of `expression::names()` in `variables`; past the end: unknown
};

/// One step of a compiled expression; operands are other steps.
struct expression_step {
    enum class kind : std::uint8_t {
        number,
        text,
        own,
        name,
        negative,
        logicalNot,
        power,
        multiply,
        divide,
        remainder,
        add,
        subtract,
        shiftLeft,
        shiftRight,
        less,
        lessEqual,
        greater,
        greaterEqual,
        equal,
        unequal,
        logicalAnd,
        logicalOr,
        choose,
        minimum,
        maximum,
        logarithm,
        exponential,
        hexadecimal,
        filePath,
        listEntry,
        fontList,
        callFunction,
    };
    kind what = kind::number;
    double number = 0.0;
    unsigned index = 0; ///< into texts or names
    unsigned first = 0; ///< operands: `count` entries of the operand table from here on
    unsigned count = 0;
};

/// A display or evaluation expression, or a limit, in compiled form. docs/declarations.md tells the language.
/// Evaluating one that yields numbers allocates nothing.
class VLDV_INTERNAL_API expression {
public:
    /// \param problem  receives the reason, with the column counted from 1, when the text is no expression
    /// \return nothing for a broken or empty text
    static std::optional<expression> compile(std::string_view text, std::string* problem = nullptr);

    /// Nothing when a function could not be called or text is asked for where there is none.
    std::optional<expression_value> evaluate(const expression_inputs& inputs) const;

    /// The names that it reads, each once, without "#".
    const std::vector<std::string>& names() const noexcept { return nameTable; }
    bool callsFunctions() const noexcept;

    /// The step that gives the result, for those who ask what kind of field it makes.
    const expression_step& root() const noexcept { return steps[result]; }
    /// The operand as a constant text, or nothing.
    std::optional<std::string_view> constantText(const expression_step& step, unsigned operand) const noexcept;
    std::optional<double> constantNumber(const expression_step& step, unsigned operand) const noexcept;
    /// The operand is "##" alone.
    bool isOwnValue(const expression_step& step, unsigned operand) const noexcept;

private:
    friend class expression_parser;
    friend class expression_evaluation;
    const expression_step& operand(const expression_step& step, unsigned i) const noexcept
    {
        return steps[operands[step.first + i]];
    }

    std::vector<expression_step> steps;
    std::vector<unsigned> operands;
    std::vector<std::string> texts;
    std::vector<std::string> nameTable;
    unsigned result = 0;
};

} // namespace vldv::base
