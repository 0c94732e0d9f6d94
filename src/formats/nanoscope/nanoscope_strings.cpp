#include "formats/nanoscope/nanoscope_strings.h"

#include "base/text.h"

#include <string_view>

namespace vldv::formats {

namespace {

/// Versions of the instrument differ in capitals: "Scan rate", "Scan Rate".
constexpr std::string_view shownKeys[] = {
    "\\Date",           "\\Scan rate",      "\\Speed",         "\\Frame direction",
    "\\Line direction", "\\Line Direction", "\\Scan direction"};

void add_string(string_table& strings, const std::string& key, const std::string& value)
{
    if (value.empty()) return;
    const auto [entry, isNew] = strings.emplace(key, value);
    if (!isNew && entry->second != value) entry->second += " / " + value;
}

void add_line(string_table& strings, const nanoscope_line& line)
{
    bool isShown = false;
    for (const std::string_view shown : shownKeys) {
        if (line.typed || !base::equal_ignoring_case(line.name, shown.substr(1))) continue;
        add_string(strings, std::string(shown), line.value);
        isShown = true;
    }
    if (!isShown) add_string(strings, line.name, line.value);
}

} // namespace

void add_section_strings(string_table& strings, const nanoscope_section& section)
{
    for (const nanoscope_line& line : section.lines) add_line(strings, line);
}

void add_shared_strings(string_table& strings, const nanoscope_header& header)
{
    if (const std::string* date = header.setting("date")) strings.emplace("\\Date", *date);
    if (const std::string* rate = header.setting("scan rate")) strings.emplace("\\Scan rate", *rate);
}

string_table document_strings(const nanoscope_header& header)
{
    string_table strings;
    for (const nanoscope_section& section : header.sections) {
        if (section.kind == nanoscope_list::image || section.kind == nanoscope_list::force_image) continue;
        string_table own;
        for (const nanoscope_line& line : section.lines)
            if (!line.typed) add_line(own, line);
        strings.merge(own); // keeps what is there
    }
    return strings;
}

} // namespace vldv::formats
