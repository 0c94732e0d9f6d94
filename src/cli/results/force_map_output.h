#pragma once
#include "cli/output/result_files.h"
#include "cli/session.h"

#include <string>
#include <vector>

namespace vldv::cli {

/// Writes volumes of force curves with their maps: to one file, or to a folder or beside each other under the names of
/// their files.
class force_map_output {
public:
    /// \param target  a container, or a folder when it has another name
    force_map_output(session& call_, const std::string& target);

    struct written {
        std::string path;
        std::vector<std::string> titles; ///< of the maps
        std::vector<std::size_t> voids;  ///< points of each that are not measured
    };
    /// Adds the maps of the volumes that were asked for to the document and saves it; a bar shows how far it is.
    /// \param image,sub  negative: all volumes of force or deflection, all parts that approach or leave \throws
    /// std::runtime_error with the reason, and nothing is written
    written write(CStorageDoc& document, const std::wstring& path, int image, int sub);

private:
    session& call;
    result_files files;
};

} // namespace vldv::cli
