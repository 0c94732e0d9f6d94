#include "platform/paths.h"

#include "base/text.h"

#include <algorithm>

namespace platform {

std::filesystem::path to_path(const std::wstring& path) { return base::narrow(path); }

std::wstring to_wide(const std::filesystem::path& path) { return base::widen(path.native()); }

std::wstring full_path(const std::wstring& path)
{
    if (path.empty()) return {};
    std::error_code error;
    std::filesystem::path absolute = std::filesystem::absolute(to_path(path), error);
    if (error) return path;
    // A step up behind a symbolic link leads out of the link's target, which the text alone does not tell.
    const bool climbs = std::ranges::find(absolute, std::filesystem::path("..")) != absolute.end();
    if (climbs) absolute = std::filesystem::weakly_canonical(absolute, error);
    return error ? path : to_wide(absolute.lexically_normal());
}

std::wstring file_name(const std::wstring& path) { return to_wide(to_path(path).filename()); }

std::wstring file_stem(const std::wstring& path) { return to_wide(to_path(path).stem()); }

std::wstring file_extension(const std::wstring& path) { return to_wide(to_path(path).extension()); }

} // namespace platform
