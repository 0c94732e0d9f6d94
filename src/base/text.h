#pragma once
#include "vldv_api.h"

#include <cstdarg>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Conversions between text forms. `char` text in memory is UTF-8. Each function returns a new zero-terminated copy
// that the caller releases with vlutl_free; a null source gives an empty text.

/// Releases what the conversions below return; null is allowed.
VLDV_API void vlutl_free(void* block) noexcept;
/// Bytes that are no UTF-8 become U+DC80 … U+DCFF and come back through `wchar2char`: file names survive the trip.
VLDV_API wchar_t* char2wchar(const char* text);
VLDV_API char* wchar2char(const wchar_t* text);
/// Valid UTF-8 out of any bytes: each that is none becomes U+FFFD.
VLDV_API char* char2utf8(const char* text);
/// As `char2wchar`, but a wrong byte becomes U+FFFD.
VLDV_API wchar_t* utf82wchar(const char* text);
/// Lone surrogates and values above U+10FFFF become U+FFFD.
VLDV_API char* wchar2utf8(const wchar_t* text);
VLDV_API char* char2char(const char* text);
VLDV_API wchar_t* wchar2wchar(const wchar_t* text);
/// Position of the first `c` at or behind `start` that is not inside "double" or 'single' quotes, or -1.
VLDV_API int untokenized_find(const char* text, char c, int start);

namespace vldv::base {

/// The conversions of texts above, from and to values.
VLDV_INTERNAL_API std::wstring widen(std::string_view text);     // char2wchar
VLDV_INTERNAL_API std::string narrow(std::wstring_view text);    // wchar2char
VLDV_INTERNAL_API std::string valid_utf8(std::string_view text); // char2utf8
/// Every byte is one character below 256 (ISO 8859-1).
VLDV_API std::string latin1_to_utf8(std::string_view text);
/// As Latin-1, with the printable characters of code page 1252 in 0x80 … 0x9F.
VLDV_API std::string cp1252_to_utf8(std::string_view text);
/// UTF-16 without its byte order mark; an odd last byte is dropped, lone surrogates become U+FFFD.
VLDV_API std::string utf16_to_utf8(std::string_view bytes, bool bigEndian);
/// True when the bytes are valid UTF-8 (no overlong forms, no surrogates).
VLDV_INTERNAL_API bool is_utf8(std::string_view bytes) noexcept;

// Numbers. None of these looks at the locale.

/// A number at the start of `text`, after blanks: decimal with optional exponent (e or E), "inf", "nan", or
/// hexadecimal after "0x". What follows is ignored, `used` receives how many bytes were read; a word that only begins
/// like "inf" or "nan" is no number. Too large gives infinity, too small 0.
VLDV_API std::optional<double> leading_number(std::string_view text, std::size_t* used = nullptr) noexcept;
/// The whole of `text`, blanks around it allowed.
VLDV_INTERNAL_API std::optional<double> whole_number(std::string_view text) noexcept;
/// The whole of `text` as an integer that fits 64 bits, decimal or hexadecimal.
VLDV_INTERNAL_API std::optional<long long> whole_integer(std::string_view text) noexcept;
/// The shortest decimal text that reads back equal.
VLDV_INTERNAL_API std::string shortest(double value);
/// "%.*g".
VLDV_INTERNAL_API std::string general(double value, int digits = 6);
/// printf into a string, always with a decimal point.
[[gnu::format(printf, 1, 2)]] VLDV_INTERNAL_API std::string formatted(const char* format, ...);
VLDV_API std::string formatted_v(const char* format, std::va_list arguments);

VLDV_INTERNAL_API std::string_view trimmed(std::string_view text) noexcept;
VLDV_API std::string lower_ascii(std::string_view text);
VLDV_INTERNAL_API bool equal_ignoring_case(std::string_view a, std::string_view b) noexcept;
/// Splits at every `separator`; an empty text gives one empty piece.
VLDV_INTERNAL_API std::vector<std::string_view> split(std::string_view text, char separator);

} // namespace vldv::base
