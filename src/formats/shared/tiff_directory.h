#pragma once
#include "base/streams/byte_reader.h"
#include "formats/shared/left_out.h"
#include "formats/shared/sample_numbers.h"
#include "formats/source.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace vldv::formats {

/// The tags of one directory of a TIFF file as they stand there, for formats that keep what matters in private tags.
class tiff_directory {
public:
    bool has(unsigned tag) const { return entries.contains(tag); }
    /// All numbers of a tag, whatever their type; empty when it is missing or a text.
    std::vector<double> numbers(unsigned tag) const;
    /// The first of them.
    std::optional<double> number(unsigned tag) const;
    /// All bytes of a tag as they stand in the file; empty when it is missing.
    std::span<const std::byte> bytes(unsigned tag) const;
    /// A text up to its first zero byte, UTF-8; empty when it is missing.
    std::string text(unsigned tag) const;

private:
    friend class tiff_directory_reader;
    struct entry {
        unsigned type = 0;
        std::uint32_t count = 0;
        std::vector<std::byte> bytes;
    };
    std::map<unsigned, entry> entries;
    byte_order order = byte_order::little;
};

/// Directories of a classic TIFF file in their order. Those behind the first that are cut short, or have a tag whose
/// values do not lie in the file, are left out, as is all behind a link that leads nowhere or back. \param missing  is
/// told of them
base::read_result<std::vector<tiff_directory>> read_tiff_directories(source& file, byte_order& order,
                                                                     left_out& missing);

/// What stands in a tag's place for a value, in the first directory of a classic TIFF file, wherever that lies: the
/// number itself when four bytes hold it, else its place. Nothing when there is no such tag.
std::optional<std::uint32_t> first_tiff_value(source& file, unsigned tag);
/// True when the first directory of a classic TIFF file holds this tag, wherever it lies.
bool file_has_tiff_tag(source& file, unsigned tag);
/// True when the first directory lies in `head` and holds this tag.
bool head_has_tiff_tag(std::span<const std::byte> head, unsigned tag);

} // namespace vldv::formats
