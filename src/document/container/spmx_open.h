#pragma once
#include "base/streams/byte_reader.h"
#include "document/container/spmx_description.h"
#include "formats/shared/zip_reader.h"

#include <cstdint>
#include <vector>

namespace vldv::document {

/// A native container that was looked through: what it describes, and where the samples of each stream stand. Nothing
/// of their size is in memory yet. Reads through the source that it was opened on.
struct opened_spmx {
    /// Of one stream, checked.
    struct place {
        formats::zip_reader::entry entry{};
        std::uint64_t elements = 0; ///< that the array will have: those of the entry in whole sub-images, at least one
        std::string missing;        ///< why there are no samples at all; empty when there are some
    };

    formats::zip_reader archive;
    spmx_description description;
    std::vector<place> samples; ///< of each stream of the description
};

/// Opens a container and checks all that it claims. \return it, or why it is refused
base::read_result<opened_spmx> open_spmx(formats::source& file);

} // namespace vldv::document
