#pragma once
#include "document/StorageDoc.h"

#include <string>
#include <vector>

namespace vldv::cli {

/// What readers left out or had to change: when the file was read, and, of a container, when what it holds was.
std::vector<std::string> notes_of(const CStorageDoc& document);

} // namespace vldv::cli
