#pragma once
#include "base/VLAxis.h"
#include "formats/mdt/mdt_frame.h"
#include "formats/shared/heights.h"

namespace vldv::formats {

/// Meaning of a dimension's index or of a measured value.
struct mdt_quantity {
    std::string name, units;
    double bias = 0.0, scale = 1.0;
    std::uint64_t count = 0; ///< indices of a dimension; 0 when the range is open
    int type = 0;            ///< of a measured value

    VLAxis axis() const { return {bias, scale, units.c_str()}; }
    value_scale meaning() const { return {scale, bias, units, "calibration " + name}; }
    /// Void when the code of the type is not known.
    SPMVarArrayType element() const noexcept;
};

/// A described array: cells of one or more values, the first dimension fastest.
struct mdt_described_array {
    std::string title;
    std::map<std::string, std::string> strings;
    std::vector<mdt_quantity> dimensions, measured;
    std::uint64_t cells = 0, offset = 0; ///< offset of the first cell in the file
    std::uint32_t statedCellBytes = 0;   ///< 0 in files that leave it open, as the number of cells
    double done = 0.0;                   ///< progress of the file before the frame

    std::uint64_t cellBytes() const noexcept;
    std::string label(const char* otherwise) const { return title.empty() ? otherwise : title; }
};

/// Reads what stands before the cells of a frame.
base::read_result<mdt_described_array> read_mdt_array_header(source& file, const mdt_frame& frame);

/// Spectra at the points of a plane: a volume for each measured value. The frame holds all cells.
base::read_result<mdt_content> read_mdt_cube(source& file, const mdt_described_array& array);

} // namespace vldv::formats
