#pragma once
#include "base/streams/byte_reader.h"
#include "formats/shared/left_out.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace vldv::formats {

/// A picture of an AIST-NT file. The samples stay in the bytes of the file.
struct aist_raster {
    std::string name, description;
    unsigned columns = 0, rows = 0;
    double left = 0.0, right = 0.0, top = 0.0, bottom = 0.0;
    std::string xUnits, yUnits, zUnits;
    std::span<const std::byte> data; ///< little-endian doubles, bottom row first
    std::span<const std::byte> mask; ///< a byte a point, 0 where nothing was measured; empty when all was
};

struct aist_curve {
    std::string name, description;
    unsigned points = 0;
    std::string xUnits, yUnits;
    std::span<const std::byte> data; ///< little-endian doubles, all x before all y
};

/// All that can be shown of the tree, in its order.
struct aist_tree {
    std::vector<aist_raster> rasters;
    std::vector<aist_curve> curves;
    left_out missing; ///< why the rest of the tree could not be walked
};

/// True when the first bytes can be the root of such a tree; there is no mark that is sure.
bool may_be_aist_tree(std::span<const std::byte> head) noexcept;

/// Walks the tree as far as that can be done; refused when nothing to show stands before its damage. What is returned
/// looks into `bytes`.
base::read_result<aist_tree> parse_aist_tree(std::span<const std::byte> bytes);

} // namespace vldv::formats
