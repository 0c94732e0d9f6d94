// Any text as a table of option declarations, settled, shown and typed back; its first line also as a dialog layout.
#include "base/SPMVarList.h"
#include "base/variables/declaration.h"
#include "base/variables/option_display.h"
#include "platform/dialogs/variable_layout.h"

#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

using namespace vldv;

namespace {

/// A declaration that is understood says the same when it is written and read again.
void check_description(const SPMVar& variable)
{
    SPMVar again;
    again.Init(variable.description().c_str());
    if (!(again.description() == variable.description())) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::istringstream lines(text), xml(text);
    std::vector<SPMVar> variables;
    for (std::string line; variables.size() < 50 && std::getline(lines, line);) {
        const base::declaration declared = base::parse_declaration(line);
        if (declared.length > 1000) continue; // arrays may be large, which is not what is asked here
        variables.emplace_back().Init(line);
        check_description(variables.back());
    }
    SPMVarList list;
    list.set_variables(variables.data(), static_cast<unsigned>(variables.size()));
    for (unsigned i = 0; i < list.get_size(); ++i) {
        SPMVar variable = list.get_var(i);
        const std::string shown = base::shown_text(list, variable);
        base::take_shown_text(list, variable, (shown + "1").c_str());
        list.set_var(variable);
    }
    std::string problem;
    if (!platform::parse_variable_layout(xml, &problem) && problem.empty()) std::abort();
    return 0;
}
