#include "view/scale/palette_folder.h"

#include "base/text.h"
#include "base/variables/global_option.h"
#include "platform/files/interface_directory.h"
#include "platform/files/paths.h"
#include "view/scale/palette_file.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace vldv::view {

namespace {

constexpr std::uintmax_t maxFileBytes = 64u << 20; // far beyond any palette

bool is_name_character(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

/// The value of a variable, or the text that stood for it.
std::string value_or(const std::string& name, const std::string& text)
{
    const char* value = name.empty() ? nullptr : std::getenv(name.c_str());
    return value ? value : text;
}

bool read_bytes(const std::filesystem::path& path, std::vector<std::byte>& out)
{
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error || size > maxFileBytes) return false;
    std::ifstream in(path, std::ios::binary);
    out.resize(size);
    in.read(reinterpret_cast<char*>(out.data()), static_cast<std::streamsize>(out.size()));
    return in.gcount() == static_cast<std::streamsize>(out.size());
}

} // namespace

std::string expanded_environment(const std::string& text)
{
    std::string out;
    for (std::size_t i = 0; i < text.size();) {
        // $NAME, ${NAME} and %NAME%. What is no name, or the name of no variable, stays as it stands.
        std::size_t end = i + 1, nameAt = i + 1;
        std::string name;
        if (text.compare(i, 2, "${") == 0 || text[i] == '%') {
            nameAt = text[i] == '%' ? i + 1 : i + 2;
            const std::size_t close = text.find(text[i] == '%' ? '%' : '}', nameAt);
            const bool isName = close != std::string::npos &&
                                std::all_of(text.begin() + static_cast<std::ptrdiff_t>(nameAt),
                                            text.begin() + static_cast<std::ptrdiff_t>(close), is_name_character);
            if (isName) {
                name = text.substr(nameAt, close - nameAt);
                end = close + 1;
            }
        } else if (text[i] == '$') {
            while (end < text.size() && is_name_character(text[end])) ++end;
            name = text.substr(nameAt, end - nameAt);
        }
        out += value_or(name, text.substr(i, end - i));
        i = end;
    }
    return out;
}

std::filesystem::path palette_folder()
{
    const std::string folder = base::global_option("directory.palettes").as_string().c_str();
    return platform::to_path(platform::expanded_home(base::widen(expanded_environment(folder))));
}

std::filesystem::path bundled_palette_folder() { return platform::find_interface_file("palettes"); }

std::optional<color_table> load_palette(const std::filesystem::path& path)
{
    std::vector<std::byte> bytes;
    if (!read_bytes(path, bytes)) return std::nullopt;
    auto table = read_palette_file(bytes);
    if (!table) return std::nullopt;
    return std::move(*table);
}

std::vector<file_palette> read_palette_folder(const std::filesystem::path& folder)
{
    std::vector<file_palette> palettes;
    std::error_code error;
    if (folder.empty()) return palettes;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::filesystem::path& path = entry->path();
        if (!base::equal_ignoring_case(path.extension().native(), ".pal")) continue;
        if (auto table = load_palette(path)) palettes.push_back({path.stem().native(), std::move(*table)});
    }
    return palettes;
}

} // namespace vldv::view
