#include "base/text.h"

#include <cstdlib>
#include <cstring>
#include <new>

using namespace vldv;

namespace {

constexpr char32_t replacement = 0xfffd;
// File names are bytes and need not be UTF-8. A byte that is none becomes a lone low surrogate, which no valid text
// decodes to; `narrow` turns it back, so that each name survives the way to wide characters and back unchanged.
constexpr char32_t byteEscape = 0xdc00; // U+DC80 … U+DCFF stand for the bytes 0x80 … 0xFF

/// Length of the well-formed UTF-8 sequence at the front and its character, or 0: no overlong forms, no surrogates.
std::size_t decode(std::string_view text, char32_t& out) noexcept
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const auto continued = [&](std::size_t count) {
        if (text.size() <= count) return false;
        for (std::size_t i = 1; i <= count; ++i)
            if ((byte(i) & 0xc0) != 0x80) return false;
        return true;
    };
    const unsigned char lead = byte(0);
    if (lead < 0x80) {
        out = lead;
        return 1;
    }
    // 0xC0 and 0xC1 would begin an overlong form of ASCII. The checks of the result below refuse the overlong forms of
    // three and four bytes, the surrogates and what lies beyond U+10FFFF.
    if (lead >= 0xc2 && lead <= 0xdf && continued(1)) {
        out = static_cast<char32_t>((lead & 0x1f) << 6 | (byte(1) & 0x3f));
        return 2;
    }
    if ((lead & 0xf0) == 0xe0 && continued(2)) {
        out = static_cast<char32_t>((lead & 0x0f) << 12 | (byte(1) & 0x3f) << 6 | (byte(2) & 0x3f));
        return out >= 0x800 && (out < 0xd800 || out > 0xdfff) ? 3 : 0;
    }
    if (lead >= 0xf0 && lead <= 0xf4 && continued(3)) {
        out = static_cast<char32_t>((lead & 0x07) << 18 | (byte(1) & 0x3f) << 12 | (byte(2) & 0x3f) << 6 |
                                    (byte(3) & 0x3f));
        return out >= 0x10000 && out <= 0x10ffff ? 4 : 0;
    }
    return 0;
}

void append_utf8(std::string& out, char32_t c)
{
    const auto tail = [&](int shift) { out += static_cast<char>(0x80 | (c >> shift & 0x3f)); };
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xc0 | c >> 6);
        tail(0);
    } else if (c < 0x10000) {
        out += static_cast<char>(0xe0 | c >> 12);
        tail(6);
        tail(0);
    } else {
        out += static_cast<char>(0xf0 | c >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

bool is_character(char32_t c) noexcept { return c < 0xd800 || (c > 0xdfff && c <= 0x10ffff); }

/// `wrongByte` gives the character for a byte that is no UTF-8.
template <class WrongByte>
std::wstring widened(std::string_view text, WrongByte wrongByte)
{
    std::wstring out;
    out.reserve(text.size());
    while (!text.empty()) {
        char32_t c = 0;
        std::size_t used = decode(text, c);
        if (used == 0) {
            c = wrongByte(static_cast<unsigned char>(text.front()));
            used = 1;
        }
        out += static_cast<wchar_t>(c);
        text.remove_prefix(used);
    }
    return out;
}

std::string narrowed(std::wstring_view text, bool bytesBack)
{
    std::string out;
    out.reserve(text.size());
    for (const wchar_t wide : text) {
        const auto c = static_cast<char32_t>(wide);
        if (bytesBack && c >= byteEscape + 0x80 && c <= byteEscape + 0xff)
            out += static_cast<char>(c - byteEscape);
        else
            append_utf8(out, is_character(c) ? c : replacement);
    }
    return out;
}

template <class Text>
// A copy for callers outside the library, who free it with vlutl_free: memory of malloc, whatever operator new they
// have.
typename Text::value_type* released(const Text& text)
{
    const std::size_t bytes = (text.size() + 1) * sizeof(typename Text::value_type);
    void* block = std::malloc(bytes);
    if (!block) throw std::bad_alloc();
    return static_cast<typename Text::value_type*>(std::memcpy(block, text.c_str(), bytes));
}

std::string_view text_of(const char* text) { return text ? text : ""; }
std::wstring_view text_of(const wchar_t* text) { return text ? text : L""; }

} // namespace

void vlutl_free(void* block) noexcept { std::free(block); }

wchar_t* char2wchar(const char* text) { return released(base::widen(text_of(text))); }
char* wchar2char(const wchar_t* text) { return released(base::narrow(text_of(text))); }
char* char2utf8(const char* text) { return released(base::valid_utf8(text_of(text))); }
wchar_t* utf82wchar(const char* text)
{
    return released(widened(text_of(text), [](unsigned char) { return replacement; }));
}
char* wchar2utf8(const wchar_t* text) { return released(narrowed(text_of(text), false)); }
char* char2char(const char* text) { return released(std::string(text_of(text))); }
wchar_t* wchar2wchar(const wchar_t* text) { return released(std::wstring(text_of(text))); }

// Quotes count from the beginning of the text, also in front of `start`; a quote of the other kind inside them is text.
int untokenized_find(const char* text, char c, int start)
{
    char quote = '\0';
    for (int i = 0; text && text[i]; ++i) {
        if (quote) {
            if (text[i] == quote) quote = '\0';
            continue;
        }
        if (text[i] == c && i >= start) return i;
        if (text[i] == '"' || text[i] == '\'') quote = text[i];
    }
    return -1;
}

namespace vldv::base {

std::wstring widen(std::string_view text)
{
    return widened(text, [](unsigned char byte) { return byteEscape + byte; });
}

std::string narrow(std::wstring_view text) { return narrowed(text, true); }

std::string valid_utf8(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        char32_t c = 0;
        const std::size_t used = decode(text, c);
        if (used)
            out += text.substr(0, used);
        else
            append_utf8(out, replacement);
        text.remove_prefix(used ? used : 1);
    }
    return out;
}

std::string latin1_to_utf8(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    for (const char c : text) append_utf8(out, static_cast<unsigned char>(c));
    return out;
}

std::string cp1252_to_utf8(std::string_view text)
{
    // 0x80 … 0x9F; the five unassigned bytes keep their Latin-1 control characters.
    static constexpr char16_t high[32] = {0x20ac, 0x0081, 0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021,
                                          0x02c6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008d, 0x017d, 0x008f,
                                          0x0090, 0x2018, 0x2019, 0x201c, 0x201d, 0x2022, 0x2013, 0x2014,
                                          0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0x009d, 0x017e, 0x0178};
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        append_utf8(out, byte >= 0x80 && byte <= 0x9f ? high[byte - 0x80] : byte);
    }
    return out;
}

std::string utf16_to_utf8(std::string_view bytes, bool bigEndian)
{
    const auto unit = [&](std::size_t i) {
        const auto first = static_cast<unsigned char>(bytes[i]), second = static_cast<unsigned char>(bytes[i + 1]);
        return static_cast<char32_t>(bigEndian ? first << 8 | second : second << 8 | first);
    };
    std::string out;
    out.reserve(bytes.size());
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        char32_t c = unit(i);
        const bool leads = c >= 0xd800 && c <= 0xdbff && i + 3 < bytes.size();
        if (leads && unit(i + 2) >= 0xdc00 && unit(i + 2) <= 0xdfff) {
            c = 0x10000 + ((c - 0xd800) << 10) + (unit(i + 2) - 0xdc00);
            i += 2;
        }
        append_utf8(out, is_character(c) ? c : replacement);
    }
    return out;
}

bool is_utf8(std::string_view bytes) noexcept
{
    while (!bytes.empty()) {
        char32_t c = 0;
        const std::size_t used = decode(bytes, c);
        if (used == 0) return false;
        bytes.remove_prefix(used);
    }
    return true;
}

} // namespace vldv::base
