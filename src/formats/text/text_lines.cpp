#include "formats/text/text_lines.h"

#include "base/text.h"
#include "formats/source.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace vldv::formats {

namespace {

constexpr std::size_t controlWindow = 4096;
constexpr std::uint64_t largestText = std::uint64_t{1} << 31;

bool is_ascii(std::string_view text) noexcept
{
    unsigned char any = 0;
    for (const char c : text) any |= static_cast<unsigned char>(c);
    return any < 0x80;
}

/// Line ends, tabs, form feeds and the end mark of old systems occur in text; other control characters do not.
bool is_control(char c) noexcept
{
    const auto code = static_cast<unsigned char>(c);
    return code < 0x20 && !(code >= 0x09 && code <= 0x0D) && code != 0x1A;
}

bool starts_utf16(std::string_view bytes) noexcept
{
    return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
}

} // namespace

std::string text_content::utf8(std::string_view piece) const
{
    std::string text8 = isLatin1 ? base::latin1_to_utf8(piece) : base::valid_utf8(piece);
    for (char& c : text8)
        if (static_cast<unsigned char>(c) < 0x20 && c != '\t') c = ' ';
    return text8;
}

base::read_result<text_content> decode_text(std::string bytes)
{
    text_content content;
    if (starts_utf16(bytes)) {
        content.text = base::utf16_to_utf8(std::string_view(bytes).substr(2), bytes[0] == '\xFE');
    } else {
        content.text = std::move(bytes);
        if (content.text.starts_with("\xEF\xBB\xBF")) content.text.erase(0, 3);
    }
    if (const std::size_t nul = content.text.find('\0'); nul != std::string::npos)
        return base::read_error{nul, "not a text: it holds NUL bytes"};
    const std::string_view head = std::string_view(content.text).substr(0, controlWindow);
    if (const auto wrong = std::ranges::find_if(head, is_control); wrong != head.end())
        return base::read_error{static_cast<std::uint64_t>(wrong - head.begin()),
                                "not a text: it holds control characters"};
    content.isLatin1 = !is_ascii(content.text) && !base::is_utf8(content.text);
    return content;
}

base::read_result<text_content> read_text(source& file)
{
    const std::uint64_t size = file.size();
    if (size > largestText) return base::read_error{0, "text of more than 2 GiB"};
    std::string bytes(std::min<std::size_t>(size, controlWindow), '\0');
    const auto fetch = [&](std::size_t from) {
        return file.read(from, std::as_writable_bytes(std::span(bytes).subspan(from)));
    };
    if (!fetch(0)) return base::read_error{0, "the file cannot be read"};
    if (!starts_utf16(bytes))
        if (const std::size_t nul = bytes.find('\0'); nul != std::string::npos)
            return base::read_error{nul, "not a text: it holds NUL bytes"};
    const std::size_t read = bytes.size();
    bytes.resize(size);
    if (!fetch(read)) return base::read_error{read, "the file cannot be read"};
    return decode_text(std::move(bytes));
}

bool line_cursor::next(std::string_view& line) noexcept
{
    if (position >= text.size()) return false;
    if (!lineFeedKnown || lineFeed < position) {
        lineFeed = std::min(text.find('\n', position), text.size());
        lineFeedKnown = true;
    }
    line = text.substr(position, lineFeed - position);
    std::size_t end = lineFeed;
    if (const void* found = std::memchr(line.data(), '\r', line.size())) {
        line = line.substr(0, static_cast<std::size_t>(static_cast<const char*>(found) - line.data()));
        end = position + line.size();
        if (end + 1 == lineFeed) ++end; // CR LF is one end
    }
    position = std::min(end + 1, text.size());
    ++lineNumber;
    return true;
}

} // namespace vldv::formats
