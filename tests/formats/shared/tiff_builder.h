#pragma once
#include "bytes.h"

#include <string>
#include <vector>

/// Makes little-endian TIFF files tag by tag.
namespace tiff_builder {

using formats::le16, formats::le32, formats::le_double;

struct tag {
    unsigned number, type;
    std::string bytes;
};

inline tag whole(unsigned number, std::uint64_t value) { return {number, 4, le32(value)}; }
inline tag real(unsigned number, double value) { return {number, 12, le_double(value)}; }
inline tag words(unsigned number, const std::string& text) { return {number, 2, text + '\0'}; }
inline tag fraction(unsigned number, std::uint64_t above, std::uint64_t below)
{
    return {number, 5, le32(above) + le32(below)};
}
inline tag blob(unsigned number, unsigned type, std::string bytes) { return {number, type, std::move(bytes)}; }

using directory = std::vector<tag>;

/// A file whose directories stand behind `body`, which begins at byte 8.
/// \param next  where the last directory says that another one stands
inline std::string file_of(const std::string& body, const std::vector<directory>& directories, std::size_t next = 0)
{
    std::string values = body, tables;
    std::size_t tableAt = 8 + body.size();
    for (const directory& each : directories)
        for (const tag& one : each) tableAt += one.bytes.size() > 4 ? one.bytes.size() : 0;
    for (const directory& each : directories) {
        tables += le16(each.size());
        for (const tag& one : each) {
            constexpr unsigned sizes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8};
            tables += le16(one.number) + le16(one.type) + le32(one.bytes.size() / sizes[one.type]);
            if (one.bytes.size() > 4) {
                tables += le32(8 + values.size());
                values += one.bytes;
            } else {
                tables += one.bytes + std::string(4 - one.bytes.size(), '\0');
            }
        }
        tables += le32(&each == &directories.back() ? next : tableAt + tables.size() + 4);
    }
    return std::string("II*\0", 4) + le32(tableAt) + values + tables;
}

} // namespace tiff_builder
