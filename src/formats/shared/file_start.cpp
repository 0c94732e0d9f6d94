#include "formats/shared/file_start.h"

#include "base/text.h"

#include <algorithm>

namespace vldv::formats {

base::read_result<std::string> read_text_before(source& file, std::string_view endMark, std::uint64_t longest)
{
    constexpr std::uint64_t firstLook = 64u << 10;
    const std::uint64_t all = std::min(file.size(), longest);
    for (std::uint64_t length = std::min(all, firstLook);; length = std::min(all, length * 4)) {
        std::string text = read_start(file, length);
        if (const std::size_t end = text.find(endMark); end != std::string::npos) {
            text.resize(end);
            return text;
        }
        if (length == all)
            return base::read_error{all, "the end of the header, \"" + std::string(base::trimmed(endMark)) +
                                             "\", is missing"};
    }
}

std::string read_start(source& file, std::uint64_t bytes)
{
    std::string text(static_cast<std::size_t>(std::min(file.size(), bytes)), '\0');
    if (!file.read(0, std::as_writable_bytes(std::span(text)))) text.clear();
    return text;
}

} // namespace vldv::formats
