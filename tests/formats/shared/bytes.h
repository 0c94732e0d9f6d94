#pragma once
#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

/// Little- and big-endian numbers as bytes, for files that tests make.
namespace vldv::formats {

inline std::string little_endian(std::uint64_t number, unsigned bytes)
{
    std::string text;
    for (unsigned i = 0; i < bytes; ++i) text += static_cast<char>(number >> 8 * i & 0xFF);
    return text;
}

inline std::string le16(std::uint64_t number) { return little_endian(number, 2); }
inline std::string le32(std::uint64_t number) { return little_endian(number, 4); }
inline std::string le64(std::uint64_t number) { return little_endian(number, 8); }
inline std::string le_float(float number) { return le32(std::bit_cast<std::uint32_t>(number)); }
inline std::string le_double(double number) { return le64(std::bit_cast<std::uint64_t>(number)); }

inline std::string reversed(std::string bytes) { return {bytes.rbegin(), bytes.rend()}; }
inline std::string be16(std::uint64_t number) { return reversed(le16(number)); }
inline std::string be32(std::uint64_t number) { return reversed(le32(number)); }
inline std::string be_double(double number) { return reversed(le_double(number)); }

/// These numbers one after another, each of them a T.
template <class T, class Number = T>
std::string in_bytes(const std::vector<Number>& numbers, std::endian order = std::endian::little)
{
    std::string text;
    for (const Number number : numbers) {
        const T value = static_cast<T>(number);
        std::string each(sizeof value, '\0');
        std::memcpy(each.data(), &value, sizeof value);
        text += order == std::endian::native ? each : reversed(each);
    }
    return text;
}

/// ASCII as UTF-16 without a mark, filled up with zeros to so many characters.
inline std::string utf16_of(const std::string& ascii, std::size_t characters = 0, bool isBigEndian = false)
{
    std::string text;
    for (const char c : ascii) text += isBigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    text.resize(2 * std::max(ascii.size(), characters));
    return text;
}

/// The text with `to` in the place of the first `from`, which has to be there: else it throws.
inline std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    return text.replace(text.find(from), from.size(), to);
}

} // namespace vldv::formats
