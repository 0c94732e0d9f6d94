#pragma once
#include "document/StorageDoc.h"

#include <filesystem>

namespace vldv::cli {

/// What lies where a container is to be written.
enum class existing_file { none, same, other, damaged, unreadable };

/// "holds something else"; for what is there and not the same.
const char* what_is(existing_file found) noexcept;

/// Compares names, sizes and checksums of the entries, so that it does not matter when and how well each was packed, and
/// unpacks what is there: a container of which only the directory is whole is damaged.
existing_file look_for_existing(const std::filesystem::path& path, CStorageDoc& document);

} // namespace vldv::cli
