#include "document/history/own_files.h"

#include "base/text.h"
#include "platform/files/paths.h"

#include <algorithm>

namespace vldv::document {

void own_files::note(const entry& added)
{
    forget(added.path);
    known.push_back(added);
}

void own_files::forget(const std::wstring& path)
{
    std::erase_if(known, [&](const entry& each) { return each.path == path; });
}

own_files::relation own_files::of(const std::wstring& path) const
{
    std::error_code error;
    const auto stamp = platform::stamp_of(path);
    if (!stamp && !std::filesystem::exists(platform::to_path(path), error)) return relation::missing;
    const auto found = std::ranges::find(known, path, &entry::path);
    if (found == known.end()) return relation::foreign;
    return stamp == found->stamp ? relation::own : relation::replaced;
}

bool own_files::knows(const std::wstring& path) const noexcept
{
    return std::ranges::find(known, path, &entry::path) != known.end();
}

std::wstring numbered_path(const std::wstring& path, unsigned number)
{
    const std::wstring extension = platform::file_extension(path);
    return path.substr(0, path.size() - extension.size()) + L" (" + std::to_wstring(number) + L")" + extension;
}

std::wstring free_path(const std::wstring& path)
{
    std::error_code error;
    std::wstring found;
    for (unsigned number = 2; found.empty() || std::filesystem::exists(platform::to_path(found), error); ++number)
        found = numbered_path(path, number);
    return found;
}

std::wstring file_to_revert(const own_files& files, const std::wstring& held)
{
    const std::wstring extension = platform::file_extension(held);
    if (!base::equal_ignoring_case(base::narrow(extension), ".spm")) return held;
    const std::wstring recording = held.substr(0, held.size() - extension.size());
    const bool isThere = platform::stamp_of(held).has_value(), isRecorded = platform::stamp_of(recording).has_value();
    if (files.knows(held) && (isThere || !files.knows(recording))) return held;
    if (files.knows(recording)) return isThere || isRecorded ? recording : held;
    return !isThere && isRecorded ? recording : held;
}

namespace {

/// Of the file at `held` and the one that was read or written last the first that stands so to the document.
std::wstring file_that_is(own_files::relation wanted, const own_files& files, const std::wstring& held)
{
    if (files.of(held) == wanted) return held;
    const own_files::entry* const last = files.last();
    return last && files.of(last->path) == wanted ? last->path : std::wstring();
}

} // namespace

std::wstring file_to_delete(const own_files& files, const std::wstring& held)
{
    return file_that_is(own_files::relation::own, files, held);
}

std::wstring changed_file(const own_files& files, const std::wstring& held)
{
    return file_that_is(own_files::relation::replaced, files, held);
}

} // namespace vldv::document
