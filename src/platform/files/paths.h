#pragma once
#include "vldv_api.h"

#include <filesystem>
#include <string>

namespace vldv::platform {

// Paths as wide text. Bytes that are no UTF-8 survive the way there and back.

VLDV_INTERNAL_API std::filesystem::path to_path(const std::wstring& path);
VLDV_INTERNAL_API std::wstring to_wide(const std::filesystem::path& path);
/// Absolute, without "." and ".." steps; relative ones start at the current folder. Empty stays empty.
VLDV_INTERNAL_API std::wstring full_path(const std::wstring& path);
/// What a user typed, with a leading "~" or "~NAME" replaced by the home folder; as it is where a file of that very
/// name exists or there is no such home.
VLDV_INTERNAL_API std::wstring expanded_home(const std::wstring& path);
/// The part behind the last slash.
VLDV_INTERNAL_API std::wstring file_name(const std::wstring& path);
/// The file name without its last extension; a name that only starts with a dot has none.
std::wstring file_stem(const std::wstring& path);
/// The last extension with its dot, or empty.
std::wstring file_extension(const std::wstring& path);

} // namespace vldv::platform
