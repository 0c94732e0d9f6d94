#pragma once
#include "vldv_api.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vldv::base {

// A list value is a text: entries in double quotes, separated by commas. Inside quotes "\"" and "\\" stand for a quote
// and a backslash; an entry without quotes reaches to the next comma, blanks around it do not count.

std::vector<std::string> parse_list(std::string_view text);
VLDV_INTERNAL_API std::string write_list(const std::vector<std::string>& entries);
/// Entry `index`, from 0; nothing when the list is shorter.
std::optional<std::string> list_entry(std::string_view text, std::size_t index);

} // namespace vldv::base
