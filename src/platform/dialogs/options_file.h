#pragma once
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vldv::platform {

struct options_entry {
    std::string key, value;
    bool operator==(const options_entry&) const = default;
};

struct options_section {
    std::string name;
    std::vector<options_entry> entries; ///< in the order of the file
    bool operator==(const options_section&) const = default;
};

// Text of option files (".opt"):
//
//     [Surface]          a section, up to the next line in brackets
//     ; a comment
//     ZScale=0.5;        key, "=", value; the last ";" outside quotes ends the value, a comment may follow
//     Title="it's; ""x""";
//
// Lines end with LF, CR LF or CR; blanks around key and value do not count. Names and keys compare exactly; where a
// section comes twice, the first counts. Passed over are: lines that are none of these, lines before a section, a byte
// order mark.
//
// Text that would not come back from a plain line is written in double quotes, a quote inside doubled; a line feed,
// carriage return or zero byte stands between two quoted pieces as \n, \r or \0 ("one"\n"two"). A backslash inside
// quotes is just that. So names, keys and values may hold anything.

std::vector<options_section> parse_options(std::string_view text);

/// The text with the lines of one section replaced, or with the section appended when it is missing. Every other byte
/// stays; the new lines end as the first line of `text` does.
std::string replace_options(std::string_view text, const options_section& section);

/// The entries of a section; none when the file has no such section. \throws CFileException
std::vector<options_entry> read_options_file(const std::filesystem::path& file, std::string_view name);

/// Replaces one section of a file in one step; a missing file is made.
/// \throws CFileException with the file as it was, also when what it holds cannot be read
void write_options_file(const std::filesystem::path& file, const options_section& section);

} // namespace vldv::platform
