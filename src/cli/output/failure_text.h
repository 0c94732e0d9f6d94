#pragma once
#include <exception>
#include <string>

namespace vldv::cli {

/// Remembers which sub-command runs, for what is told of it.
void set_operation(const std::string& name);

/// Why something was broken off. Of memory that ran out it names the sub-command: "not enough memory for fourier".
std::string failure_text(const std::exception& failure);

} // namespace vldv::cli
