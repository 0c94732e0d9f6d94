#pragma once
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vldv::platform {

// Lines of a profile, without their line feed:
//
//     [Plugins\\Median]        a section; names, keys and texts escape what would end them or the line
//     size=3                   an integer
//     title="5 \"x\" 5\n"      a text
//     table=hex:00ff80         bytes
//
// Escapes are \\ \" \= \] \n \r \t and \xHH. Bytes that are no UTF-8 are written as \xHH, so the file is always UTF-8;
// on reading every byte may stand for itself, and blanks around keys and values do not count.

using profile_value = std::variant<int, std::string, std::vector<std::byte>>;

struct profile_entry {
    std::string key;
    profile_value value;
};

/// True for lines that open a section, well or badly: what follows belongs to no earlier one.
bool opens_section(std::string_view line);
/// The section's name; nothing when the line is none or is broken.
std::optional<std::string> read_section_line(std::string_view line);
std::string write_section_line(std::string_view name);

/// The key and value; nothing for comments (# or ; in front), and for lines that are broken or of another program.
std::optional<profile_entry> read_entry_line(std::string_view line);
std::string write_entry_line(const profile_entry& entry);

} // namespace vldv::platform
