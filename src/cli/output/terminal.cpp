#include "cli/output/terminal.h"

#include "base/text.h"

#include <algorithm>
#include <utility>

namespace vldv::cli {

namespace {

constexpr unsigned firstBits = 0x3F; // of a byte behind the first

/// Bytes of the UTF-8 character that begins with `lead`; 0 when none does.
std::size_t length_of(unsigned char lead) noexcept
{
    if (lead < 0x80) return 1;
    if (lead < 0xC2 || lead > 0xF4) return 0;
    return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

/// Of a whole, valid character of more than one byte.
char32_t code_point(std::string_view character) noexcept
{
    const auto lead = static_cast<unsigned char>(character[0]);
    char32_t value = character.size() == 2 ? lead & 0x1F : character.size() == 3 ? lead & 0x0F : lead & 0x07;
    for (const char c : character.substr(1)) value = value << 6 | (static_cast<unsigned char>(c) & firstBits);
    return value;
}

/// Changes the direction of writing, breaks lines or has no width.
bool is_hidden(char32_t c) noexcept
{
    constexpr std::pair<char32_t, char32_t> ranges[] = {
        {0x61C, 0x61C}, {0x200B, 0x200F}, {0x2028, 0x202E}, {0x2060, 0x206F}, {0xFEFF, 0xFEFF}};
    return std::ranges::any_of(ranges, [c](const auto& range) { return c >= range.first && c <= range.second; });
}

std::string shown_byte(unsigned char byte) { return base::formatted("\\x%02X", unsigned{byte}); }

/// A whole character as a terminal may see it. \param keepsLines  line ends and tabs stay
std::string shown(std::string_view character, bool keepsLines)
{
    const auto first = static_cast<unsigned char>(character[0]);
    if (character.size() == 1) {
        if (first >= 0x20 && first != 0x7F) return std::string(character);
        if (keepsLines && (first == '\n' || first == '\t')) return std::string(character);
        if (first == '\n') return "\\n";
        if (first == '\t') return "\\t";
        if (first == '\r') return "\\r";
        return shown_byte(first);
    }
    const char32_t c = code_point(character);
    if (c < 0xA0) return shown_byte(static_cast<unsigned char>(c));
    return is_hidden(c) ? base::formatted("\\u%04X", static_cast<unsigned>(c)) : std::string(character);
}

/// The first character of `text`, or its first byte when it begins none.
std::string_view next_character(std::string_view text) noexcept
{
    const std::string_view character =
        text.substr(0, std::max<std::size_t>(length_of(static_cast<unsigned char>(text[0])), 1));
    return base::is_utf8(character) ? character : text.substr(0, 1);
}

std::string visible(std::string_view text, bool keepsLines)
{
    std::string out;
    while (!text.empty()) {
        const std::string_view character = next_character(text);
        const auto first = static_cast<unsigned char>(character[0]);
        out += character.size() == 1 && first >= 0x80 ? shown_byte(first) : shown(character, keepsLines);
        text.remove_prefix(character.size());
    }
    return out;
}

} // namespace

std::string visible_text(std::string_view text) { return visible(text, false); }
std::string visible_lines(std::string_view text) { return visible(text, true); }

std::string path_line(std::string_view path)
{
    std::string line;
    for (const char c : path) line += c == '\n' ? "\\n" : c == '\r' ? "\\r" : std::string(1, c);
    return line;
}

visible_buffer::~visible_buffer() { dropPending(); }

bool visible_buffer::dropPending()
{
    const std::string text = visible_lines(std::exchange(pending, {}));
    return target.sputn(text.data(), static_cast<std::streamsize>(text.size())) ==
           static_cast<std::streamsize>(text.size());
}

bool visible_buffer::put(unsigned char byte)
{
    // Bytes wait until their character is whole, as programs may write it in pieces; one that is broken off goes out as
    // bytes.
    const bool goesOn = (byte & ~firstBits) == 0x80;
    const bool isBroken = !pending.empty() && !goesOn;
    if (isBroken && !dropPending()) return false;
    pending += static_cast<char>(byte);
    return pending.size() < length_of(static_cast<unsigned char>(pending[0])) || dropPending();
}

visible_buffer::int_type visible_buffer::overflow(int_type c)
{
    if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
    return put(static_cast<unsigned char>(traits_type::to_char_type(c))) ? c : traits_type::eof();
}

int visible_buffer::sync() { return target.pubsync(); }

terminal_guard::terminal_guard(std::ostream& stream_, bool isTerminal) : stream(stream_), before(stream_.rdbuf())
{
    if (!isTerminal || !before) return;
    buffer = std::make_unique<visible_buffer>(*before);
    stream.rdbuf(buffer.get());
}

terminal_guard::~terminal_guard()
{
    if (buffer) stream.rdbuf(before);
}

} // namespace vldv::cli
