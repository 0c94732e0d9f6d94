#pragma once
#include "base/SPMDataStream.h"

#include <map>
#include <ostream>
#include <span>
#include <string>
#include <vector>

namespace vldv::document {

using spmx_texts = std::map<std::string, std::string>;

/// What main.xml is written from; it only looks.
struct spmx_content {
    struct stream {
        const SPMDataStream* data;
        const spmx_texts* texts;
    };
    const spmx_texts* texts; ///< of the document
    std::vector<stream> streams;
};

/// Writes main.xml in the layout that spmx_layout.h knows. `encoding` goes into its first line.
void write_spmx_description(std::ostream& out, const spmx_content& content, const char* encoding);

} // namespace vldv::document
