// One change in a list of 60 options against what it replaces: compiling the expressions anew for every evaluation.
// The floor is to read each of the 60 options by its name once.
#include "base/SPMVarList.h"
#include "base/variables/declaration.h"
#include "ratio.h"

#include <string>
#include <vector>

using namespace vldv;

namespace {

constexpr int optionCount = 60;
constexpr int repeats = 2000;

/// As a view declares them: every third follows two others, the rest are plain.
std::string declaration_of(int i)
{
    const std::string name = "option.number" + std::to_string(i);
    if (i % 3 != 2) return name + "(Label),double,0,1000";
    const std::string one = "#option.number" + std::to_string(i - 1), other = "#option.number" + std::to_string(i - 2);
    return name + ",double,,,,,if(" + one + ",0," + other + "+if(" + one + " || " + other + ",65,0))";
}

} // namespace

int main()
{
    std::vector<SPMVar> declared(optionCount);
    std::vector<std::string> names;
    for (int i = 0; i < optionCount; ++i) {
        declared[static_cast<std::size_t>(i)].Init(declaration_of(i));
        names.push_back(declared[static_cast<std::size_t>(i)].get_name());
    }
    SPMVarList list;
    list.set_variables(declared.data(), optionCount);
    volatile double sink = 0.0;
    int turn = 0;

    bench::contest contest;
    contest.add("one change, settled", [&] {
        for (int i = 0; i < repeats; ++i) list.set_var("option.number0", ++turn % 2 ? "1" : "2");
    });
    contest.add("every option read by name", [&] {
        for (int i = 0; i < repeats; ++i)
            for (const std::string& name : names) sink = sink + static_cast<double>(list[name]);
    });
    contest.add("expressions compiled anew", [&] {
        for (int i = 0; i < repeats; ++i)
            for (const SPMVar& variable : declared)
                if (const auto fields = base::split_options(variable.get_options()); !fields.evaluation.empty())
                    sink = sink + static_cast<double>(base::expression::compile(fields.evaluation)->names().size());
    });
    contest.run(7);
    std::printf("%-44s %9.3f us\n", "one change", contest.best("one change, settled") * 1e3 / repeats);

    bench::verdict verdict;
    verdict.at_most("settling / reading every option",
                    contest.best("one change, settled") / contest.best("every option read by name"), 1.0);
    verdict.at_most("settling / compiling anew",
                    contest.best("one change, settled") / contest.best("expressions compiled anew"), 0.05);
    return verdict.exit_status();
}
