#pragma once
#include "formats/nid/nid_header.h"
#include "formats/shared/force/directions.h"
#include "formats/shared/left_out.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace vldv::formats {

/// One block of samples of a Nanosurf file and what its section says about it.
struct nid_channel {
    std::string sectionName;
    const nid_section* section = nullptr;
    std::string name;  ///< of the quantity: "Z-Axis"
    std::string frame; ///< "Scan forward", "Spec backward", "Spectrum FFT"
    unsigned points = 0, lines = 0;
    unsigned measuredLines = 0; ///< when it was stored; those above hold nothing yet
    unsigned sampleBytes = 2;   ///< 1, 2 or 4, signed, little-endian
    std::uint64_t offset = 0;   ///< of the first sample in the file
    value_scale scale;
    std::string scaleProblem; ///< why its numbers have no meaning, or empty

    bool isImage() const noexcept;
    bool isSpectroscopy() const noexcept { return frame.starts_with("Spec ") || frame.starts_with("2nd spec "); }
    scan_direction direction() const noexcept;
    /// The frame without its direction: "Scan", "2nd scan".
    std::string pass() const;
    std::uint64_t samples() const noexcept { return std::uint64_t{points} * lines; }
    SPMVarArrayType type() const noexcept;
    /// Name and, where it is no plain scan, the frame: what people tell channels apart by.
    std::string label() const;
    base::read_error unreadable() const;
};

/// True when all samples of a line are the same, as where nothing was measured yet.
bool is_uniform(std::span<const std::byte> samples, std::size_t sampleBytes);

/// Start and range of a dimension: 0 along a line, 1 across lines, as the section states them.
struct nid_range {
    double start = 0.0, range = 0.0;
    std::string units;
};
nid_range nid_dimension(const nid_section& section, const std::string& prefix);

/// All channels with the places of their samples. The header must outlive them.
base::read_result<std::vector<nid_channel>> find_nid_channels(const nid_header& header, std::uint64_t fileSize,
                                                              left_out& missing);

} // namespace vldv::formats
