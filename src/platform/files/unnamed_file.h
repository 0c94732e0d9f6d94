#pragma once
#include <filesystem>
#include <sys/types.h>

namespace vldv::platform {

/// Opens an empty file in `folder` that has no name, for reading and writing; it vanishes when the descriptor is
/// closed, also by the end of the process. \return the descriptor, or -1 where the file system or the system has none
int open_unnamed(const std::filesystem::path& folder, mode_t mode);

/// Whether `open_unnamed` may succeed; files have names from the start then, as on systems without unnamed ones. For
/// tests. \return the answer before
bool allow_unnamed_files(bool allowed) noexcept;

/// What leads to an open file by its descriptor, in this process.
std::filesystem::path path_of_descriptor(int file);

} // namespace vldv::platform
