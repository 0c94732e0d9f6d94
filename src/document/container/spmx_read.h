#pragma once
#include "formats/source.h"

#include <string>
#include <vector>

class VLFileReader;

namespace vldv::document {

struct spmx_reading {
    std::string failure = {}; ///< why the container was refused; empty when it was not
    bool isWhole = true;      ///< no image was left out
};

/// Reads a native container into `target`. An image whose samples are damaged or missing is left out; when none is
/// whole the container is refused.
/// \param warnings  is told of images that are left out, and of streams whose samples do not fill their dimensions:
/// what is missing there counts as 0, or hold fewer sub-images than they name. So is the text `formats::readerNote`
spmx_reading read_spmx(formats::source& file, VLFileReader& target, std::vector<std::string>& warnings);

} // namespace vldv::document
