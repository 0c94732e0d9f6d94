#include "document/recording_folder.h"

#include <algorithm>
#include <fstream>

namespace document {

const formats::format_row* claimed_format(const std::filesystem::path& file, bool byName)
{
    std::ifstream in(file, std::ios::binary);
    std::vector<std::byte> head(formats::sniffBytes);
    in.read(reinterpret_cast<char*>(head.data()), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(in.gcount()));
    return formats::find_format(head, byName ? file.filename().native() : std::string());
}

std::vector<std::filesystem::path> recordings_in(const std::filesystem::path& folder)
{
    std::vector<std::filesystem::path> files;
    std::error_code error, ignored;
    for (std::filesystem::recursive_directory_iterator
             entry(folder, std::filesystem::directory_options::skip_permission_denied, error),
         end;
         !error && entry != end; entry.increment(error))
        if (entry->is_regular_file(ignored) && claimed_format(entry->path(), true)) files.push_back(entry->path());
    std::ranges::sort(files);
    return files;
}

} // namespace document
