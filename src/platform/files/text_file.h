#pragma once
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace vldv::platform {

/// The whole file. \throws CFileException, also for one of more than `maxBytes`
std::string read_text_file(const std::filesystem::path& file, std::size_t maxBytes);
/// Replaces the file in one step, or makes it. \throws CFileException with the file as it was
void write_text_file(const std::filesystem::path& file, std::string_view text);

} // namespace vldv::platform
