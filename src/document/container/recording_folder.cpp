#include "document/container/recording_folder.h"

#include "base/text.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>

namespace vldv::document {

namespace {

namespace fs = std::filesystem;

/// Up to `sniffBytes` of a file. \return empty, or why they cannot be read
std::string read_head(const fs::path& file, std::vector<std::byte>& head)
{
    errno = 0;
    std::ifstream in(file, std::ios::binary);
    head.resize(formats::sniffBytes);
    in.read(reinterpret_cast<char*>(head.data()), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(in.gcount()));
    return in.is_open() && !in.bad() ? "" : std::strerror(errno ? errno : EIO);
}

/// Walks through folders, one after the other, and sorts what it meets.
class folder_walk {
public:
    explicit folder_walk(const std::function<bool(const fs::path&)>& isLeftOut_) : isLeftOut(isLeftOut_) {}

    folder_content walk(const fs::path& folder)
    {
        for (waiting = {folder}; !waiting.empty();) {
            const fs::path next = std::move(waiting.back());
            waiting.pop_back();
            look(next);
        }
        std::ranges::sort(found.recordings, {}, &folder_content::recording::path);
        std::ranges::sort(found.unreadables, {}, &folder_content::unreadable::path);
        return std::move(found);
    }

private:
    using names_by_format = std::map<const formats::format_row*, std::vector<std::string>>;

    void look(const fs::path& folder)
    {
        std::error_code error;
        names_by_format names;
        const std::size_t first = found.recordings.size();
        for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
            meet(*entry, names);
        if (error) found.unreadables.push_back({folder, error.message()});
        leaveLeaders(first, names);
    }

    void meet(const fs::directory_entry& entry, names_by_format& names)
    {
        std::error_code error;
        // Folders wait in a list instead of being walked into by recursion, so that no depth exhausts the stack. Links
        // to folders are not followed: they may lead in a circle, or to recordings that are found at their own place.
        if (entry.symlink_status(error).type() == fs::file_type::directory) {
            if (!isLeftOut || !isLeftOut(entry.path())) waiting.push_back(entry.path());
            return;
        }
        const fs::file_type type = entry.status(error).type();
        // Of a link that leads nowhere, and after other errors, nobody knows what they hide.
        if (type == fs::file_type::none || type == fs::file_type::unknown)
            found.unreadables.push_back({entry.path(), error.message()});
        else if (type == fs::file_type::not_found && formats::has_own_ending(entry.path().filename().native()))
            found.unreadables.push_back({entry.path(), "the link leads nowhere"});
        else if (type == fs::file_type::regular)
            judge(entry.path(), names);
    }

    void judge(const fs::path& file, names_by_format& names)
    {
        std::vector<std::byte> head;
        if (std::string reason = read_head(file, head); !reason.empty()) {
            found.unreadables.push_back({file, std::move(reason)});
            return;
        }
        const std::string name = file.filename().native();
        // A content that tells its format by itself makes the file a recording for certain; one that is only recognised
        // together with its name may be any program's.
        const formats::format_row* const certain = formats::find_format(head, {});
        const formats::format_row* const format = certain ? certain : formats::find_format(head, name);
        const bool isOwn = formats::has_own_ending(name);
        if (!format && !isOwn) {
            ++found.others;
            return;
        }
        found.recordings.push_back({file, certain || isOwn});
        if (format && format->leaders) names[format].push_back(name);
    }

    /// Of each set of files in one folder only the one that stands for it stays.
    void leaveLeaders(std::size_t first, names_by_format& names)
    {
        std::vector<std::string> led;
        for (auto& [format, members] : names) {
            std::ranges::sort(members);
            const std::vector<std::string> leaders = format->leaders(members);
            for (std::size_t i = 0; i < members.size(); ++i)
                if (leaders[i] != members[i]) led.push_back(members[i]);
        }
        std::ranges::sort(led);
        const auto isLed = [&](const folder_content::recording& each) {
            return std::ranges::binary_search(led, each.path.filename().native());
        };
        const auto begin = found.recordings.begin() + static_cast<std::ptrdiff_t>(first);
        found.recordings.erase(std::remove_if(begin, found.recordings.end(), isLed), found.recordings.end());
    }

    const std::function<bool(const fs::path&)>& isLeftOut;
    folder_content found;
    std::vector<fs::path> waiting;
};

} // namespace

folder_content recordings_in(const fs::path& folder, const std::function<bool(const fs::path&)>& isLeftOut)
{
    return folder_walk(isLeftOut).walk(folder);
}

bool is_recording(const fs::path& file)
{
    std::error_code error;
    std::vector<std::byte> head;
    if (!fs::is_regular_file(file, error) || !read_head(file, head).empty()) return false;
    if (has_recording_name(file)) return true;
    const formats::format_row* const format = formats::find_format(head, {});
    constexpr SupportedFileTypes anybodys[] = {FILE_BMP, FILE_JPEG, FILE_PNG, FILE_TIFF, FILE_TEXT};
    return format && std::ranges::find(anybodys, format->type) == std::end(anybodys);
}

bool has_recording_name(const fs::path& file) { return formats::has_own_ending(file.filename().native()); }

std::string why_no_recordings(const folder_content& content)
{
    if (content.others == 0) return "the folder holds no file that opens";
    return base::formatted(
        "none of the files in the folder (%zu) is a recording by its name or content; a file that is "
        "named itself is tried all the same",
        content.others);
}

} // namespace vldv::document
