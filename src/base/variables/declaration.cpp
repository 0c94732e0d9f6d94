#include "base/variables/declaration.h"

#include "base/text.h"
#include "base/variables/expression.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace vldv::base {

namespace {

constexpr std::string_view quoteMark = "\\\"";
constexpr std::string_view functionItem = "call_function(";

struct keyword_row {
    SPMVarType type;
    const char* keyword;
};

constexpr std::array<keyword_row, 6> typeKeywords = {{
    {SPM_VAR_DOUBLE, "double"},
    {SPM_VAR_INT, "int"},
    {SPM_VAR_BOOLEAN, "boolean"},
    {SPM_VAR_STRING, "string"},
    {SPM_VAR_ENUM, "enum"},
    {SPM_VAR_ARRAY, "array"},
}};

bool is_special(char c)
{
    return static_cast<unsigned char>(c) <= ' ' || c == '\\' || c == '"' || c == '(' || c == ')' || c == ',' ||
           c == 0x7f;
}

// A text between two marks \" with each special character as a backslash and two hexadecimal digits. Nothing that
// separates fields stands inside, so that a declaration can be cut at its commas before anything is decoded.
std::string encoded(std::string_view text)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string out(quoteMark);
    for (const char c : text) {
        if (is_special(c)) {
            const auto byte = static_cast<unsigned char>(c);
            out += {'\\', digits[byte >> 4], digits[byte & 15]};
        } else {
            out += c;
        }
    }
    return out += quoteMark;
}

int hex_digit(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

/// Removes an encoded text from the front; nothing when there is none or it is broken.
std::optional<std::string> take_encoded(std::string_view& text)
{
    if (!text.starts_with(quoteMark)) return std::nullopt;
    std::string out;
    for (std::size_t i = quoteMark.size(); i < text.size();) {
        if (text[i] != '\\') {
            out += text[i++];
            continue;
        }
        if (text.substr(i).starts_with(quoteMark)) {
            text.remove_prefix(i + quoteMark.size());
            return out;
        }
        const int high = i + 1 < text.size() ? hex_digit(text[i + 1]) : -1;
        const int low = i + 2 < text.size() ? hex_digit(text[i + 2]) : -1;
        if (high < 0 || low < 0) return std::nullopt;
        out += static_cast<char>(high * 16 + low);
        i += 3;
    }
    return std::nullopt;
}

/// Position of the ")" that closes the "(" at the front, or npos.
std::size_t closing_parenthesis(std::string_view text)
{
    int depth = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '(') ++depth;
        if (text[i] == ')' && --depth == 0) return i;
    }
    return std::string_view::npos;
}

/// Removes a label in parentheses from the front; nothing when the parentheses do not close.
std::optional<std::string> take_label(std::string_view& text)
{
    std::string_view inside = text.substr(1);
    if (auto label = take_encoded(inside); label && inside.starts_with(')')) {
        text = inside.substr(1);
        return label;
    }
    const std::size_t close = closing_parenthesis(text);
    if (close == std::string_view::npos) return std::nullopt;
    std::string label(text.substr(1, close - 1));
    text.remove_prefix(close + 1);
    return label;
}

bool is_plain(std::string_view text)
{
    return !text.empty() && text.find_first_of("(),\"\\") == std::string_view::npos && text.front() != ' ' &&
           text.back() != ' ' && std::ranges::none_of(text, [](unsigned char c) { return c < ' ' || c == 0x7f; });
}

std::string name_text(std::string_view name)
{
    return name.empty() || is_plain(name) ? std::string(name) : encoded(name);
}

std::string label_text(std::string_view label)
{
    const std::string plain = "(" + std::string(label) + ")";
    const bool closesAtEnd = closing_parenthesis(plain) == plain.size() - 1;
    return closesAtEnd && !label.empty() && !label.starts_with(quoteMark) ? plain : "(" + encoded(label) + ")";
}

/// The field up to the next comma outside parentheses and quotes; `rest` loses it with its comma.
/// Nothing when `rest` holds no further field.
std::optional<std::string_view> take_field(std::optional<std::string_view>& rest)
{
    if (!rest) return std::nullopt;
    int depth = 0;
    bool quoted = false;
    for (std::size_t i = 0; i < rest->size(); ++i) {
        const char c = (*rest)[i];
        // An encoded text begins and ends with a mark that holds a quote: the two cancel out.
        if (c == '"') quoted = !quoted;
        if (quoted) continue;
        if (c == '(') ++depth;
        if (c == ')' && depth > 0) --depth;
        if (c != ',' || depth > 0) continue;
        const std::string_view field = rest->substr(0, i);
        rest = rest->substr(i + 1);
        return trimmed(field);
    }
    const std::string_view field = *rest;
    rest.reset();
    return trimmed(field);
}

std::optional<double> constant(std::string_view text, std::string& problem)
{
    if (const auto number = whole_number(text)) return number;
    const auto rule = expression::compile(text, &problem);
    const auto result = rule ? rule->evaluate({}) : std::nullopt;
    return result ? std::optional(result->asNumber()) : std::nullopt;
}

/// Reads a limit or step; one that is not given leaves `value` alone. A limit may be infinite, which is none.
bool take_number(std::optional<std::string_view>& rest, const char* what, double& value, std::string& problem,
                 bool mayBeInfinite = true)
{
    const auto field = take_field(rest);
    if (!field || field->empty()) return true;
    const auto number = constant(*field, problem);
    const bool isNumber = number && !std::isnan(*number) && (mayBeInfinite || std::isfinite(*number));
    if (isNumber)
        value = *number;
    else
        problem = std::string("unreadable ") + what + " \"" + excerpt(*field) + "\"" +
                  (problem.empty() ? "" : ", " + problem);
    return isNumber;
}

bool take_count(std::string_view text, unsigned& value)
{
    const auto number = whole_integer(text);
    if (!number || *number < 0 || *number > std::numeric_limits<unsigned>::max()) return false;
    value = static_cast<unsigned>(*number);
    return true;
}

/// "2", "int16", "2 int16" and shape words behind either.
bool parse_element(std::string_view field, declaration& out)
{
    std::string_view rest = trimmed(field);
    if (rest.empty()) return true;
    if (rest.front() >= '0' && rest.front() <= '9') {
        if (!take_count(take_word(rest), out.elementSize)) return false;
    } else {
        out.elementSize = 0;
    }
    const bool hasSize = out.elementSize != 0 || rest.size() != trimmed(field).size();
    std::string_view ahead = rest;
    const std::string keyword = take_word(ahead);
    if (array_type_from_keyword(keyword.c_str(), out.elementType)) {
        rest = ahead;
        if (out.elementSize == 0) out.elementSize = element_size(out.elementType);
    }
    out.shape = std::string(rest);
    return hasSize || out.elementType != SPM_ARRAY_VOID;
}

void parse_items(std::optional<std::string_view>& rest, declaration& out)
{
    while (rest) {
        const auto before = rest;
        const auto field = take_field(rest);
        if (field->empty()) {
            // An empty field is the display expression that is not given; it and what follows are the options.
            rest = rest ? before : std::nullopt;
            return;
        }
        if (*field == encoded("")) return; // the mark between items and a display expression
        out.items.push_back(parse_item(*field));
    }
}

bool parse_type_fields(std::optional<std::string_view> rest, declaration& out, std::string& problem)
{
    bool good = true;
    if (out.type == SPM_VAR_DOUBLE || out.type == SPM_VAR_INT) {
        good = take_number(rest, "minimum", out.minimum, problem) && take_number(rest, "maximum", out.maximum, problem);
        if (good && out.type == SPM_VAR_DOUBLE) good = take_number(rest, "step", out.step, problem, false);
    } else if (out.type == SPM_VAR_ENUM) {
        parse_items(rest, out);
    } else if (out.type == SPM_VAR_ARRAY) {
        const auto count = take_field(rest);
        good = !count || count->empty() || take_count(*count, out.length);
        if (!good) problem = "unreadable length \"" + std::string(*count) + "\"";
        if (const auto element = take_field(rest); good && element) {
            good = parse_element(*element, out);
            if (!good) problem = "unreadable element \"" + std::string(*element) + "\"";
        }
    }
    if (rest) out.options = std::string(*rest);
    return good;
}

std::string limit_text(double limit, double absent) { return limit == absent ? std::string() : shortest(limit); }

std::string item_text(const declared_item& item)
{
    const bool isFunction = item.key == item.label && item.key.starts_with(functionItem) &&
                            closing_parenthesis(item.key) == item.key.size() - 1 && parse_item(item.key) == item;
    if (isFunction) {
        std::optional<std::string_view> whole = item.key;
        if (take_field(whole) == item.key && !whole) return item.key;
    }
    const std::string key = is_plain(item.key) ? item.key : encoded(item.key);
    // An empty key without label would read as the mark that ends the items.
    if (item.key == item.label && !item.key.empty()) return key;
    // A lone quote in a label would hide the comma behind the item.
    const bool hasQuote = item.label.find('"') != std::string::npos;
    return key + (hasQuote ? "(" + encoded(item.label) + ")" : label_text(item.label));
}

std::string element_text(const declaration& source)
{
    std::string out = std::to_string(source.elementSize);
    if (source.elementType != SPM_ARRAY_VOID && *array_type_keyword(source.elementType))
        out += std::string(" ") + array_type_keyword(source.elementType);
    if (!source.shape.empty()) out += " " + source.shape;
    return out;
}

std::vector<std::string> type_fields(const declaration& source)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    switch (source.type) {
    case SPM_VAR_DOUBLE:
        return {limit_text(source.minimum, -infinity), limit_text(source.maximum, infinity),
                limit_text(source.step, 0.0)};
    case SPM_VAR_INT:
        return {limit_text(source.minimum, -infinity), limit_text(source.maximum, infinity)};
    case SPM_VAR_ENUM: {
        std::vector<std::string> fields;
        for (const declared_item& item : source.items) fields.push_back(item_text(item));
        const bool hasDisplay = !source.options.empty() && source.options.front() != ',';
        // Options whose display field is not plainly empty would read as further items.
        if (hasDisplay) fields.push_back(encoded(""));
        return fields;
    }
    case SPM_VAR_ARRAY:
        return {std::to_string(source.length), element_text(source)};
    default:
        return {};
    }
}

} // namespace

std::string encode_word(std::string_view text)
{
    const bool plain = !text.empty() && std::ranges::none_of(text, is_special);
    return plain ? std::string(text) : encoded(text);
}

std::string take_word(std::string_view& text)
{
    text = trimmed(text);
    std::string_view rest = text;
    if (auto word = take_encoded(rest)) {
        text = trimmed(rest);
        return *word;
    }
    const std::size_t end = std::min(text.find(' '), text.size());
    std::string word(text.substr(0, end));
    text = trimmed(text.substr(end));
    return word;
}

declared_item parse_item(std::string_view text)
{
    text = trimmed(text);
    if (text.starts_with(functionItem)) return {std::string(text), std::string(text)};
    std::string_view rest = text;
    std::string key;
    if (auto encodedKey = take_encoded(rest)) {
        key = *encodedKey;
    } else {
        rest = text.substr(std::min(text.find('('), text.size()));
        key = std::string(trimmed(text.substr(0, text.size() - rest.size())));
    }
    if (rest.empty()) return {key, key};
    if (rest.starts_with('('))
        if (auto label = take_label(rest); label && trimmed(rest).empty()) return {key, *label};
    return {std::string(text), std::string(text)};
}

bool stands_under(const SPMVar& heading, const SPMVar& variable) noexcept
{
    const std::string_view over = heading.get_name(), name = variable.get_name();
    return name.size() > over.size() && name.starts_with(over) &&
           (name[over.size()] == '.' || name[over.size()] == '_');
}

const char* type_keyword(SPMVarType type) noexcept
{
    const auto known = std::ranges::find(typeKeywords, type, &keyword_row::type);
    return known == typeKeywords.end() ? "" : known->keyword;
}

option_fields split_options(std::string_view text)
{
    std::optional<std::string_view> rest = text;
    const std::string_view display = *take_field(rest);
    return {display, take_field(rest).value_or(std::string_view())};
}

bool is_function_item(const declared_item& item)
{
    return item.key == item.label && item.key.starts_with(functionItem);
}

declaration parse_declaration(std::string_view text, std::string* problem)
{
    declaration out;
    std::string reason;
    const auto refused = [&](std::string why) {
        if (problem) *problem = std::move(why);
        return out;
    };
    std::string_view rest = text;
    while (!rest.empty() && rest.front() == ' ') rest.remove_prefix(1);
    if (auto name = take_encoded(rest)) {
        out.name = *name;
    } else {
        const std::size_t end = std::min(rest.find_first_of("(,"), rest.size());
        out.name = std::string(trimmed(rest.substr(0, end)));
        rest.remove_prefix(end);
    }
    if (rest.starts_with('(')) {
        auto label = take_label(rest);
        if (!label) return refused("the label does not end with \")\"");
        out.label = *label;
    }
    rest = rest.substr(std::min(rest.find_first_not_of(' '), rest.size()));
    if (rest.empty() && !out.name.empty() && !out.label.empty()) return out; // a heading
    if (!rest.starts_with(',')) return refused("no comma before the type");
    // Behind the type come its own fields, each of which may be empty, or missing at the end: minimum, maximum and step
    // of a double; minimum and maximum of an int; the items of an enum; length and element of an array. What is left is
    // the options: the display expression, then the evaluation expression.
    std::optional<std::string_view> fields = rest.substr(1);
    const auto keyword = take_field(fields);
    const auto known =
        std::ranges::find_if(typeKeywords, [&](const keyword_row& row) { return row.keyword == *keyword; });
    if (known == typeKeywords.end()) return refused("unknown type \"" + std::string(*keyword) + "\"");
    declaration typed = out;
    typed.type = known->type;
    return parse_type_fields(fields, typed, reason) ? typed : refused(reason);
}

std::string write_declaration(const declaration& source)
{
    std::string out = name_text(source.name);
    if (!source.label.empty()) out += label_text(source.label);
    const auto known = std::ranges::find(typeKeywords, source.type, &keyword_row::type);
    if (known == typeKeywords.end()) return out;
    out += "," + std::string(known->keyword);
    std::vector<std::string> fields = type_fields(source);
    if (source.options.empty())
        while (!fields.empty() && fields.back().empty()) fields.pop_back();
    for (const std::string& field : fields) out += "," + field;
    if (source.options.empty()) return out;
    return out + "," + source.options;
}

} // namespace vldv::base
