#pragma once
#include "base/streams/byte_reader.h"
#include "formats/source.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vldv::formats {

/// One entry of the directory of an HDF 4 file: what a piece of it is and where it lies.
struct hdf_element {
    std::uint16_t tag = 0;
    std::uint64_t offset = 0, length = 0;
};

/// All elements in the order of the directory, those without data left out. Places are as stated, not checked.
struct hdf_directory {
    std::vector<hdf_element> elements;

    /// The first element with this tag, or null.
    const hdf_element* find(std::uint16_t tag) const noexcept;
};

bool is_hdf4(std::span<const std::byte> head) noexcept;
bool is_hdf5(std::span<const std::byte> head) noexcept;

base::read_result<hdf_directory> read_hdf_directory(source& file);

/// The bytes of an element; a reason when they lie outside the file or exceed `most`.
base::read_result<std::vector<std::byte>> read_hdf_element(source& file, const hdf_element& element,
                                                           std::uint64_t most);

} // namespace vldv::formats
