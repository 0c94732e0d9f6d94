#pragma once
#include <filesystem>
#include <system_error>
#include <vector>

namespace vldv::recovery {

/// All that stands in a folder, in no order. \param error  why some of it may be missing; none when all was seen
std::vector<std::filesystem::path> entries_of(const std::filesystem::path& folder, std::error_code& error);

} // namespace vldv::recovery
