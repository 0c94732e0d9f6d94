#include "formats/registry.h"

#include "base/text.h"

#include <algorithm>

namespace vldv::formats {

namespace {

bool is_continuation(char c) noexcept { return (static_cast<unsigned char>(c) & 0xC0u) == 0x80u; }

char lower(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

/// `patterns` holds several, separated by ";".
bool any_pattern_matches(std::string_view patterns, std::string_view fileName) noexcept
{
    for (;;) {
        const std::size_t end = patterns.find(';');
        if (pattern_matches(patterns.substr(0, end), fileName)) return true;
        if (end == std::string_view::npos) return false;
        patterns.remove_prefix(end + 1);
    }
}

const format_row* find_certain(std::span<const std::byte> head) noexcept
{
    const auto rows = format_table();
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&](const format_row& row) { return row.sniff && row.sniff(head); });
    return found != rows.end() ? &*found : nullptr;
}

} // namespace

const format_row* find_format(std::span<const std::byte> head, std::string_view fileName) noexcept
{
    if (const format_row* certain = find_certain(head)) return certain;
    const auto rows = format_table();
    const auto fitting = std::find_if(rows.begin(), rows.end(), [&](const format_row& row) {
        return row.possible && any_pattern_matches(row.patterns, fileName) && row.possible(head);
    });
    return fitting != rows.end() ? &*fitting : nullptr;
}

std::vector<const format_row*> formats_to_try(std::span<const std::byte> head, std::string_view fileName)
{
    if (const format_row* certain = find_certain(head)) return {certain};
    std::vector<const format_row*> rows;
    for (const bool byName : {true, false})
        for (const format_row& row : format_table())
            if (row.possible && (byName || row.underAnyName) && any_pattern_matches(row.patterns, fileName) == byName &&
                row.possible(head))
                rows.push_back(&row);
    return rows;
}

bool has_own_ending(std::string_view fileName) noexcept
{
    // What a Macintosh leaves beside a file on a disk of others has its name behind two signs.
    if (fileName.starts_with("._")) return false;
    // Of the table's patterns those that no other program's files have: no text, picture, .par, .img, .stp or .hdf. The
    // last ending counts: "scan.jpk-force-0-0.png" is a picture.
    fileName.remove_prefix(std::min(fileName.rfind('.'), fileName.size()));
    return any_pattern_matches(
        "*.spm;*.00?;*.di;*.pfc;*.jpk;*.jpk-*;*.tmd;*.sm2;*.tlk;*.mdt;*.bcr;*.bcrf;*.ibw;*.wip;*.nid;"
        "*.ezd;*.pni;*.sur;*.aist;*.opd",
        fileName);
}

// The last "*" takes as little as it can and grows by one character after each failure; earlier ones never need to.
bool pattern_matches(std::string_view pattern, std::string_view fileName) noexcept
{
    std::size_t p = 0, n = 0, afterStar = std::string_view::npos, starTook = 0;
    while (n < fileName.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            afterStar = ++p;
            starTook = n;
        } else if (p < pattern.size() && pattern[p] == '?') {
            ++p;
            do ++n; // one character of UTF-8
            while (n < fileName.size() && is_continuation(fileName[n]));
        } else if (p < pattern.size() && lower(pattern[p]) == lower(fileName[n])) {
            ++p, ++n;
        } else if (afterStar != std::string_view::npos) {
            p = afterStar;
            n = ++starTook;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

} // namespace vldv::formats
