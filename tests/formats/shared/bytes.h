#pragma once
#include <bit>
#include <cstdint>
#include <string>

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

} // namespace vldv::formats
