#pragma once
#include "base/SPMVarList.h"

#include <istream>
#include <string>
#include <vector>

namespace vldv::cli {

/// A table of options as a module author writes it, in one list.
struct option_table {
    std::vector<SPMVar> variables;
    std::vector<std::string> problems; ///< "line N: …"; such lines are left out, a bad default leaves the type's own
};

/// One declaration a line, behind a tab its default; empty lines do not count.
option_table read_option_table(std::istream& in);

} // namespace vldv::cli
