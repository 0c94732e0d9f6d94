#pragma once
#include <string_view>

namespace vldv {

/// What the status bar says of a command that has no text in the string table; empty where nobody knows the number.
std::string_view command_status(unsigned id) noexcept;

} // namespace vldv
