#include "platform/files/paths.h"

#include "base/text.h"

#include <algorithm>
#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace vldv::platform {

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

std::wstring expanded_home(const std::wstring& path)
{
    std::error_code error;
    if (!path.starts_with(L'~') || std::filesystem::exists(to_path(path), error)) return path;
    const std::size_t end = std::min(path.find(L'/'), path.size());
    const std::string user = base::narrow(path.substr(1, end - 1));
    const char* home = user.empty() ? std::getenv("HOME") : nullptr;
    if (!home) {
        const passwd* const entry = user.empty() ? getpwuid(getuid()) : getpwnam(user.c_str());
        home = entry ? entry->pw_dir : nullptr;
    }
    return home ? base::widen(home) + path.substr(end) : path;
}

std::wstring file_name(const std::wstring& path) { return to_wide(to_path(path).filename()); }

std::wstring file_stem(const std::wstring& path) { return to_wide(to_path(path).stem()); }

std::wstring file_extension(const std::wstring& path) { return to_wide(to_path(path).extension()); }

} // namespace vldv::platform
