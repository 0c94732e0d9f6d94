#pragma once
#include "base/SPMVar.h"
#include "base/variables/expression.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vldv::base {

/// A variable's expressions in compiled form. One that is broken or not given is nothing.
struct compiled_options {
    std::string text; ///< what was compiled
    std::optional<expression> display, evaluation;
    std::vector<unsigned> displayInputs, evaluationInputs; ///< positions of the names in the list
    bool asksFunctions = false;    ///< the evaluation may differ though nothing in the list does
    std::uint64_t evaluatedAt = 0; ///< clock of the last evaluation

    /// Compiles the options of a declaration, "display,evaluation".
    static compiled_options of(std::string_view text);
    void bind(const std::function<unsigned(std::string_view)>& position);
};

/// Keeps the variables of one list in the state that their evaluation expressions ask for.
class option_settling {
public:
    void clear();
    /// Tells that the variable at `index` is new or has other options.
    void declare(unsigned index, const SPMVar& variable);
    /// Tells that the variable at `index` has another value.
    void touch(unsigned index) { changedAt[index] = ++clock; }
    /// Evaluates in the order of declaration what reads a changed variable or calls a function and stores the results,
    /// again and again until nothing moves, at most as many rounds as there are variables. "##" is the value from
    /// before, so that what another variable was on the way leaves no trace. Allocates nothing where values are
    /// numbers.
    /// \param moved  receives the positions that changed, each once; one that came back to its value did not change
    void settle(std::vector<SPMVar>& variables, const std::function<unsigned(std::string_view)>& position,
                std::vector<unsigned>& moved);

    const compiled_options& operator[](unsigned index) const noexcept { return compiled[index]; }

private:
    /// A variable before it first moved.
    struct former_value {
        unsigned index;
        std::uint64_t timestamp;
        double number = 0.0; ///< of an enum its item
        std::string text;
        bool isTold = false; ///< changed before the settling, wherever that leads

        former_value(unsigned index_, const SPMVar& variable);
        bool equals(const SPMVar& variable) const;
        expression_value valueOf(const SPMVar& variable) const;
    };

    bool isDue(unsigned index) const;
    expression_value ownValue(unsigned index, const SPMVar& variable) const;
    void forgetReturned(std::vector<SPMVar>& variables, std::vector<unsigned>& moved) const;

    std::vector<former_value> formers;   ///< of the present settling
    std::vector<unsigned> formerNumbers; ///< by index of the variable: which of `formers` is its own, counted from 1
    std::vector<compiled_options> compiled;
    std::vector<std::uint64_t> changedAt; ///< clock of the last change, one a variable
    std::uint64_t clock = 0;
    bool bound = true; ///< the positions are those of the list
};

/// Evaluates and stores into `variable` within its limits; a result that is no finite number leaves a number alone.
/// \return the value moved
bool store_evaluated(SPMVar& variable, const expression_value& result);

/// Gives `variable` the value that people are shown, limits not applying; a text makes it a `string`.
void show_value(SPMVar& variable, const expression_value& shown);

} // namespace vldv::base
