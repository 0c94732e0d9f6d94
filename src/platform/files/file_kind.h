#pragma once
#include <filesystem>
#include <string>

namespace vldv::platform {

/// Why what stands at `path` cannot be opened as a file, in words; empty for files, folders and what is not there.
/// Opening a pipe would wait for somebody to write to it, opening a device may do anything.
std::string special_kind(const std::filesystem::path& path);

} // namespace vldv::platform
