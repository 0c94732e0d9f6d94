#pragma once
#include "vldv_api.h"

#include <string>
#include <vector>

namespace vldv {

/// Text of the string table with this number, UTF-8; empty for an unknown one.
const char* string_resource(unsigned id) noexcept;
/// All numbers, ascending.
std::vector<unsigned> string_resource_ids();

/// What is said of a command.
struct command_prompt {
    std::string status; ///< in the status bar, a sentence
    std::string tip;    ///< beside its button, a word or two
};
/// The two halves of the string with the command's number, "status\ntip"; where one is missing, it is empty. A command
/// without a string has the program's own sentence (`command_status`).
VLDV_INTERNAL_API command_prompt command_prompt_of(unsigned id);

} // namespace vldv
