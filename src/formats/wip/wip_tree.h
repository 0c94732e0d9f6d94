#pragma once
#include "base/streams/byte_reader.h"
#include "formats/shared/left_out.h"
#include "formats/source.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vldv::formats {

/// A tag of a WITec file: its value lies at `start` … `end` of the file, or is made of further tags.
struct wip_tag {
    enum value_type : std::uint32_t {
        tags = 0,
        extended = 1, ///< 10-byte float
        float64 = 2,
        float32 = 3,
        int64 = 4,
        int32 = 5,
        date = 6,
        bytes = 7,
        boolean = 8,
        texts = 9,
    };

    std::string name;
    std::uint32_t type = tags;
    std::uint64_t start = 0, end = 0;
    std::vector<wip_tag> children;

    std::uint64_t length() const noexcept { return end - start; }
    /// The first child of this name, or null.
    const wip_tag* find(std::string_view childName) const noexcept;
};

bool is_wip_head(std::span<const std::byte> head) noexcept;

/// Reads all tags, without their values. The root is the project. Of a file that is cut short the tags that are whole
/// are read, and `missing` is told.
base::read_result<wip_tag> read_wip_tree(source& file, left_out& missing);

/// Values of tags. A tag that is null, of another type or too long for a value gives none.
std::vector<double> read_wip_numbers(source& file, const wip_tag* tag);
std::optional<double> read_wip_number(source& file, const wip_tag* tag);
/// The first text, as UTF-8.
std::string read_wip_text(source& file, const wip_tag* tag);

} // namespace vldv::formats
