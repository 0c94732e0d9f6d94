#pragma once
#include "base/SPMDataStream.h"
#include "base/streams/byte_reader.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vldv::document {

/// One stream as main.xml describes it. The array's type, axes and names are set; its length is 0.
struct described_stream {
    SPMDataStream stream;
    std::map<std::string, std::string> strings;
    std::string rawEntry; ///< archive entry of the samples
};

/// What main.xml says.
struct spmx_description {
    std::map<std::string, std::string> strings;
    std::vector<described_stream> streams;
};

/// Reads main.xml, in the layout that a document writes or as any well-formed XML of the same elements. Missing
/// attributes have defaults; bytes that are no UTF-8 are taken for code page 1252.
base::read_result<spmx_description> parse_spmx_description(std::string_view xml);

} // namespace vldv::document
