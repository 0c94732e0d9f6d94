#pragma once
#include <filesystem>
#include <string>

namespace vldv::platform {

// The file behind a profile. All throw CException with the path and the reason.

/// The whole file; empty when there is none. Refuses what is no file, or larger than a profile ever is.
std::string read_profile_file(const std::filesystem::path& file);
/// Replaces the file in one step.
void replace_profile_file(const std::filesystem::path& file, const std::string& text);
/// Makes the folders that are missing, for the user alone.
void make_profile_folder(const std::filesystem::path& file);
/// Throws when it can be told beforehand that storing will fail; changes nothing.
void expect_storable(const std::filesystem::path& file);

} // namespace vldv::platform
