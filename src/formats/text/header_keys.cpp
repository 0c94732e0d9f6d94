#include "formats/text/header_keys.h"

#include "base/text.h"

namespace vldv::formats {

std::string_view without_comment_mark(std::string_view line) noexcept
{
    line = base::trimmed(line);
    while (!line.empty() && std::string_view("#%;").find(line.front()) != std::string_view::npos) line.remove_prefix(1);
    if (line.starts_with("//")) line.remove_prefix(2);
    return base::trimmed(line);
}

key_value split_key(std::string_view line) noexcept
{
    line = without_comment_mark(line);
    std::size_t at = line.find('\t');
    if (at == std::string_view::npos) at = line.find_first_of(":=");
    if (at == std::string_view::npos) return {{}, line};
    std::string_view key = base::trimmed(line.substr(0, at));
    if (key.ends_with(':')) key.remove_suffix(1);
    return {key, base::trimmed(line.substr(at + 1))};
}

std::string_view value_of(const header_lines& lines, std::string_view key)
{
    for (const std::string& line : lines)
        if (const key_value pair = split_key(line); base::equal_ignoring_case(pair.key, key)) return pair.value;
    return {};
}

bool has_line(const header_lines& lines, std::size_t index, std::string_view start)
{
    return index < lines.size() && std::string_view(lines[index]).starts_with(start);
}

} // namespace vldv::formats
