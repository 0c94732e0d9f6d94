#pragma once
#include "base/streams/byte_reader.h"
#include "formats/shared/force/directions.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>

namespace vldv::formats {

constexpr std::size_t sm2HeaderBytes = 512;

/// A page of an RHK SPM32 file: its header, and where its samples lie from the start of the page.
struct sm2_page {
    bool isImage = true; ///< else curves, a row each
    SPMVarArrayType type = SPM_ARRAY_INT16;
    std::uint64_t kind = 0; ///< what was measured; the label may leave it open
    unsigned columns = 0, rows = 0;
    std::uint64_t dataOffset = sm2HeaderBytes;
    std::uint64_t dataBytes = 0; ///< to the next page
    VLAxis x, y;
    value_scale scale;
    std::string label;
    scan_direction direction = scan_direction::unknown;
    std::map<std::string, std::string> strings;

    std::uint64_t samples() const noexcept { return std::uint64_t{columns} * rows; }
};

bool is_sm2_page(std::span<const std::byte> head) noexcept;

/// Reads the text header of a page from its 512 bytes.
base::read_result<sm2_page> parse_sm2_page(std::span<const std::byte> header);

} // namespace vldv::formats
