#include "platform/profile/profile_line.h"

#include "base/text.h"

#include <charconv>
#include <limits>

namespace vldv::platform {

namespace {

constexpr std::string_view hexDigits = "0123456789abcdef";
constexpr std::string_view binaryMark = "hex:";
constexpr std::string_view commentMarks = "#;";

void append_hex(std::string& out, unsigned char byte)
{
    out += hexDigits[byte >> 4];
    out += hexDigits[byte & 15];
}

/// Two hexadecimal digits at the front.
std::optional<unsigned char> read_hex(std::string_view text)
{
    const std::string_view digits = text.substr(0, 2);
    unsigned char byte = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
    const bool isWhole = digits.size() == 2 && error == std::errc() && end == digits.data() + digits.size();
    return isWhole ? std::optional(byte) : std::nullopt;
}

/// Bytes of the character at the front: 1 for ASCII, 0 when it is no UTF-8.
std::size_t character_length(std::string_view text)
{
    if (static_cast<unsigned char>(text.front()) < 0x80) return 1;
    constexpr std::size_t longest = 4;
    for (std::size_t length = 2; length <= longest && length <= text.size(); ++length)
        if (base::is_utf8(text.substr(0, length))) return length;
    return 0;
}

void append_control(std::string& out, char c)
{
    switch (c) {
    case '\n':
        out += "\\n";
        break;
    case '\r':
        out += "\\r";
        break;
    case '\t':
        out += "\\t";
        break;
    default:
        out += "\\x";
        append_hex(out, static_cast<unsigned char>(c));
    }
}

/// `text` on one line of UTF-8, without a bare `terminator`.
std::string escaped(std::string_view text, char terminator)
{
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = character_length(text);
        const char c = text.front();
        const bool isControl = static_cast<unsigned char>(c) < ' ' || c == '\x7f';
        if (length == 0 || isControl) {
            append_control(out, c);
        } else {
            if (c == terminator || c == '\\') out += '\\';
            out += text.substr(0, length);
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return out;
}

/// A key also keeps its outer blanks, and does not begin like a comment or a section.
std::string escaped_key(std::string_view key)
{
    std::string out = escaped(key, '=');
    const auto hide = [&out](std::size_t at) {
        std::string code = "\\x";
        append_hex(code, static_cast<unsigned char>(out[at]));
        out.replace(at, 1, code);
    };
    if (!out.empty() && out.back() == ' ') hide(out.size() - 1);
    if (!out.empty() && std::string_view(" [#;").find(out.front()) != std::string_view::npos) hide(0);
    return out;
}

/// Reads the byte that the escape at the front of `text`, behind the backslash, stands for, and removes it.
std::optional<char> take_escape(std::string_view& text)
{
    constexpr std::string_view names = "nrt\\\"=]", meanings = "\n\r\t\\\"=]";
    if (text.empty()) return std::nullopt;
    const char name = text.front();
    text.remove_prefix(1);
    if (name == 'x') {
        const auto byte = read_hex(text);
        if (!byte) return std::nullopt;
        text.remove_prefix(2);
        return static_cast<char>(*byte);
    }
    const std::size_t at = names.find(name);
    return at == std::string_view::npos ? std::nullopt : std::optional(meanings[at]);
}

/// Undoes `escaped`; nothing when an escape is unknown or cut short.
std::optional<std::string> unescaped(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const char c = text.front();
        text.remove_prefix(1);
        const std::optional<char> meant = c == '\\' ? take_escape(text) : c;
        if (!meant) return std::nullopt;
        out += *meant;
    }
    return out;
}

/// Index of the first `terminator` without a backslash in front; npos when there is none.
std::size_t find_end(std::string_view text, char terminator)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == terminator) return i;
        if (text[i] == '\\') ++i;
    }
    return std::string_view::npos;
}

/// The inside of a line or value that begins at its first byte and ends with `terminator` as its very last.
std::optional<std::string> read_enclosed(std::string_view text, char terminator)
{
    text.remove_prefix(1);
    const std::size_t end = find_end(text, terminator);
    if (end == std::string_view::npos || end + 1 != text.size()) return std::nullopt;
    return unescaped(text.substr(0, end));
}

std::optional<profile_value> read_binary(std::string_view digits)
{
    if (digits.size() % 2 != 0) return std::nullopt;
    std::vector<std::byte> bytes;
    bytes.reserve(digits.size() / 2);
    for (; !digits.empty(); digits.remove_prefix(2)) {
        const auto byte = read_hex(digits);
        if (!byte) return std::nullopt;
        bytes.push_back(std::byte{*byte});
    }
    return bytes;
}

std::optional<profile_value> read_integer(std::string_view text)
{
    const auto number = base::whole_integer(text);
    if (!number || *number < std::numeric_limits<int>::min() || *number > std::numeric_limits<int>::max())
        return std::nullopt;
    return static_cast<int>(*number);
}

std::optional<profile_value> read_value(std::string_view text)
{
    if (text.starts_with('"')) return read_enclosed(text, '"');
    if (text.starts_with(binaryMark)) return read_binary(text.substr(binaryMark.size()));
    return read_integer(text);
}

std::string value_text(int value) { return std::to_string(value); }

std::string value_text(const std::string& value) { return '"' + escaped(value, '"') + '"'; }

std::string value_text(const std::vector<std::byte>& value)
{
    std::string out(binaryMark);
    out.reserve(out.size() + 2 * value.size());
    for (const std::byte byte : value) append_hex(out, std::to_integer<unsigned char>(byte));
    return out;
}

} // namespace

bool opens_section(std::string_view line) { return base::trimmed(line).starts_with('['); }

std::optional<std::string> read_section_line(std::string_view line)
{
    if (!opens_section(line)) return std::nullopt;
    return read_enclosed(base::trimmed(line), ']');
}

std::string write_section_line(std::string_view name) { return '[' + escaped(name, ']') + ']'; }

std::optional<profile_entry> read_entry_line(std::string_view line)
{
    const std::string_view text = base::trimmed(line);
    const std::size_t end = find_end(text, '=');
    if (end == std::string_view::npos || opens_section(text)) return std::nullopt;
    if (commentMarks.find(text.front()) != std::string_view::npos) return std::nullopt;
    auto key = unescaped(base::trimmed(text.substr(0, end)));
    auto value = read_value(base::trimmed(text.substr(end + 1)));
    if (!key || !value) return std::nullopt;
    return profile_entry{std::move(*key), std::move(*value)};
}

std::string write_entry_line(const profile_entry& entry)
{
    return escaped_key(entry.key) + '=' + std::visit([](const auto& value) { return value_text(value); }, entry.value);
}

} // namespace vldv::platform
