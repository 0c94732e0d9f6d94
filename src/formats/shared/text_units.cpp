#include "formats/shared/text_units.h"

#include "base/text.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vldv::formats {

namespace {

constexpr std::string_view micro = "\xC2\xB5"; // U+00B5

struct spelling {
    std::string_view from, to;
};

/// Words and letters that stand for a whole unit. Micro as the byte 0xE6 of old code pages reads as U+00E6 here.
constexpr spelling spellings[] = {
    {"micron", "\xC2\xB5m"},
    {"microns", "\xC2\xB5m"},
    {"micrometer", "\xC2\xB5m"},
    {"micrometers", "\xC2\xB5m"},
    {"nanometer", "nm"},
    {"nanometers", "nm"},
    {"meter", "m"},
    {"meters", "m"},
    {"volt", "V"},
    {"volts", "V"},
    {"ampere", "A"},
    {"amps", "A"},
    {"sec", "s"},
    {"second", "s"},
    {"seconds", "s"},
    {"msec", "ms"},
    {"degree", "\xC2\xB0"},
    {"degrees", "\xC2\xB0"},
    {"deg", "\xC2\xB0"},
    {"\xC2\xBA", "\xC2\xB0"},
    {"angstrom", "\xC3\x85"},
    {"angstroms", "\xC3\x85"},
    {"ang", "\xC3\x85"},
    {"\xE2\x84\xAB", "\xC3\x85"},
    {"pixel", "px"},
    {"pixels", "px"},
    {"newton", "N"},
    {"newtons", "N"},
};

constexpr std::string_view bases[] = {"m", "V",   "A",   "s",  "Hz",  "N",         "N/m", "Pa", "W",
                                      "J", "K",   "F",   "C",  "T",   "S",         "rad", "eV", "\xCE\xA9",
                                      "g", "m/s", "V/m", "cd", "mol", "m\xC2\xB2", "m^2"};
constexpr std::string_view wholes[] = {"\xC2\xB0",
                                       "\xC3\x85",
                                       "px",
                                       "%",
                                       "in",
                                       "inch",
                                       "\"",
                                       "dB",
                                       "a.u.",
                                       "arb",
                                       "arb. units",
                                       "\xC2\xB0"
                                       "C",
                                       "min",
                                       "h",
                                       "counts",
                                       "mbar",
                                       "bar"};
constexpr std::string_view prefixes[] = {"a", "f", "p", "n", micro, "m", "c", "k", "M", "G", "T"};

template <class List>
bool holds(const List& list, std::string_view text)
{
    return std::ranges::find(list, text) != std::end(list);
}

bool is_symbol(std::string_view unit)
{
    if (holds(wholes, unit) || holds(bases, unit)) return true;
    return std::ranges::any_of(prefixes, [&](std::string_view prefix) {
        return unit.starts_with(prefix) && holds(bases, unit.substr(prefix.size()));
    });
}

std::string with_micro_sign(std::string_view text)
{
    for (const std::string_view spelt : {"\xCE\xBC", "\xC3\xA6", "u", "~"}) // Greek mu, the DOS byte, ASCII
        if (text.starts_with(spelt) && holds(bases, text.substr(spelt.size())))
            return std::string(micro).append(text.substr(spelt.size()));
    return std::string(text);
}

/// The bracket at or before `end` in text: position of "(" or "[" and of its end.
struct bracket {
    std::size_t open = std::string_view::npos, close = 0;
};

bracket last_bracket(std::string_view text, std::size_t end)
{
    bracket found;
    found.close = text.find_last_of(")]", end);
    if (found.close == std::string_view::npos || found.close == 0) return found;
    found.open = text.find_last_of(text[found.close] == ')' ? '(' : '[', found.close);
    return found;
}

std::string tidy_name(std::string_view before, std::string_view after)
{
    std::string name(base::trimmed(before));
    while (!name.empty() && (name.back() == '_' || name.back() == ',' || name.back() == ' ')) name.pop_back();
    after = base::trimmed(after);
    if (!name.empty() && !after.empty()) name += ' ';
    return name.append(after);
}

} // namespace

std::string normal_unit(std::string_view text)
{
    text = base::trimmed(text);
    for (const spelling& row : spellings)
        if (base::equal_ignoring_case(text, row.from)) return std::string(row.to);
    return with_micro_sign(text);
}

bool is_known_unit(std::string_view text) { return is_symbol(normal_unit(text)); }

std::optional<quantity> parse_quantity(std::string_view text)
{
    text = base::trimmed(text);
    std::string spelt(text);
    if (text.find('.') == std::string_view::npos && std::ranges::count(text, ',') == 1)
        std::ranges::replace(spelt, ',', '.');
    std::size_t used = 0;
    const auto value = base::leading_number(spelt, &used);
    if (!value || spelt.substr(0, used).find_first_of("xX") != std::string::npos) return std::nullopt; // "0x10"
    const bool isWord = used < spelt.size() && spelt[used] != ' '; // that begins like "nan" or "inf"
    if (!std::isfinite(*value) && isWord) return std::nullopt;
    const std::string_view unit = base::trimmed(std::string_view(spelt).substr(used));
    if (unit.find_first_of(" \t:=") != std::string_view::npos) return std::nullopt;
    if (!unit.empty() && (std::string_view("0123456789.,-+/").find(unit.front()) != std::string_view::npos))
        return std::nullopt;
    return quantity{*value, normal_unit(unit)};
}

std::optional<quantity> stated_quantity(std::string_view text)
{
    if (base::trimmed(text).empty()) return std::nullopt;
    quantity stated = parse_quantity(text).value_or(quantity{std::nan(""), {}});
    stated.text = base::trimmed(text);
    return stated;
}

column_heading parse_heading(std::string_view text)
{
    text = base::trimmed(text);
    if (text.size() > 1 && text.front() == '"' && text.back() == '"') text = text.substr(1, text.size() - 2);
    for (bracket found = last_bracket(text, text.size()); found.open != std::string_view::npos;
         found = last_bracket(text, found.open)) {
        const std::string_view inside = text.substr(found.open + 1, found.close - found.open - 1);
        if (is_known_unit(inside))
            return {tidy_name(text.substr(0, found.open), text.substr(found.close + 1)), normal_unit(inside)};
    }
    for (const std::string_view mark : {",", " in "}) {
        const std::size_t at = text.rfind(mark);
        if (at != std::string_view::npos && is_known_unit(text.substr(at + mark.size())))
            return {tidy_name(text.substr(0, at), {}), normal_unit(text.substr(at + mark.size()))};
    }
    return {tidy_name(text, {}), {}};
}

} // namespace vldv::formats
